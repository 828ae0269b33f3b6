#include <algorithm>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "platform/CodePage.h"
#include "store/DefaultRows.h"
#include "store/NullFields.h"
#include "tools/FieldText.h"
#include "tools/TextForm.h"

namespace qrv {

namespace {

using Key = std::vector<Value>;

/// Why a line can't be taken, as a sentence without its end.
struct Refusal {
    std::string reason;
};

[[noreturn]] void refuse(std::string reason) { throw Refusal{std::move(reason)}; }

bool isBlank(char c) { return c == ' ' || c == '\t'; }

void skipBlanks(std::string_view& rest) {
    while (!rest.empty() && isBlank(rest.front())) rest.remove_prefix(1);
}

/// The first `count` characters, which are taken off.
std::string_view take(std::string_view& rest, std::size_t count) {
    const std::string_view taken = rest.substr(0, count);
    rest.remove_prefix(taken.size());
    return taken;
}

/// Where a quoted text ends, its last quote included; raises where it doesn't.
std::size_t quotedLength(std::string_view rest) {
    for (std::size_t i = 1; i < rest.size(); ++i) {
        if (static_cast<unsigned char>(rest[i]) < 0x20) refuse("A text has a control character that isn't escaped");
        if (rest[i] == '"') return i + 1;
        if (rest[i] == '\\') ++i;
    }
    refuse("A text has no closing quote");
}

std::string_view takeWritten(std::string_view& rest) {
    if (!rest.empty() && rest.front() == '"') return take(rest, quotedLength(rest));
    std::size_t length = 0;
    while (length < rest.size() && !isBlank(rest[length])) ++length;
    return take(rest, length);
}

/// The rows of one table while its section is read.
class Section {
 public:
    explicit Section(TableContent& content) : content_(content), table_(*content.table) {
        for (std::size_t i = 0; i < content.rows.size(); ++i) places_.emplace(keyOf(table_, content.rows[i]), i);
    }

    void addLine(std::string_view line) {
        const bool removes = line.front() == '-';
        if (removes) line.remove_prefix(1);
        const Fields fields = parseFields(line);
        if (removes) {
            requireNothingElse(fields);
            remove(rowOf(fields));
        } else {
            add(fields);
        }
    }

    /// What is left and what was added.
    void finish() {
        std::size_t kept = 0;
        for (std::size_t i = 0; i < content_.rows.size(); ++i) {
            if (removed_.contains(i)) continue;
            if (kept != i) content_.rows[kept] = std::move(content_.rows[i]);
            ++kept;
        }
        content_.rows.resize(kept);
        sortByKey(content_);
    }

 private:
    /// The fields that a line gives, by their columns.
    using Fields = std::map<std::size_t, Value>;

    [[nodiscard]] Fields parseFields(std::string_view rest) const {
        Fields fields;
        for (skipBlanks(rest); !rest.empty() && rest.front() != '#'; skipBlanks(rest)) {
            const std::size_t equals = rest.find('=');
            if (equals == std::string_view::npos) refuse("\"" + std::string(rest) + "\" is no Field=value");
            const std::string name(take(rest, equals));
            rest.remove_prefix(1);
            const int column = table_.columnIndex(name);
            if (column < 0) refuse("Table " + std::string(table_.name) + " has no field \"" + name + "\"");
            const auto place = static_cast<std::size_t>(column);
            if (fields.contains(place)) refuse(name + " stands twice");
            fields.emplace(place, parseValue(table_.columns[place], rest));
        }
        if (fields.empty()) refuse("There is no field");
        for (const std::size_t column : identityOf(table_)) require(fields, column);
        return fields;
    }

    /// What a line doesn't give is null.
    [[nodiscard]] TableRow rowOf(const Fields& fields) const {
        TableRow row(table_.columns.size());
        for (const auto& [column, value] : fields) row[column] = value;
        return row;
    }

    [[nodiscard]] Value parseValue(const Column& column, std::string_view& rest) const {
        ParsedField field = parseField(column, takeWritten(rest));
        if (field.refusal.empty() && isNull(field.value) && !mayBeNull(column)) field.refusal = "must not be null";
        if (!field.refusal.empty()) refuse(std::string(column.name) + " " + field.refusal);
        if (!rest.empty() && !isBlank(rest.front())) {
            refuse("There is no blank behind the value of " + std::string(column.name));
        }
        return std::move(field.value);
    }

    [[nodiscard]] bool mayBeNull(const Column& column) const {
        const auto key = identityOf(table_);
        const bool isOfKey = std::ranges::any_of(key, [&](std::size_t i) { return &table_.columns[i] == &column; });
        return !isOfKey && qrv::mayBeNull(table_, column);
    }

    void require(const Fields& fields, std::size_t column) const {
        if (!fields.contains(column)) refuse(std::string(table_.columns[column].name) + " is missing");
    }

    /// A null that keeps the desktop from showing the row must be meant.
    void requireWhatIsRead(const Fields& fields) const {
        for (std::size_t i = 0; i < table_.columns.size(); ++i) {
            if (!isReadIfNull(table_, table_.columns[i])) require(fields, i);
        }
    }

    void requireNothingElse(const Fields& fields) const {
        const auto key = identityOf(table_);
        for (const auto& [column, value] : fields) {
            if (std::ranges::find(key, column) != key.end()) continue;
            refuse(std::string(table_.columns[column].name) + " has no place in a line that takes a row away");
        }
    }

    [[nodiscard]] std::string nameOf(const TableRow& row) const {
        const std::string key = keyText(table_, row);
        return key.empty() ? "the row" : "the row " + key;
    }

    void add(const Fields& fields) {
        const TableRow row = rowOf(fields);
        const bool isUnique = table_.indexes.empty() || table_.indexes.front().unique;
        const Key key = keyOf(table_, row);
        if (!given_.insert(key).second && isUnique)
            refuse("Table " + std::string(table_.name) + " has " + nameOf(row) + " already");
        const auto place = places_.find(key);
        const bool isNew = place == places_.end();
        if (isNew && table_.rowSet == RowSet::Fixed)
            refuse("Table " + std::string(table_.name) + " can't have " + nameOf(row));
        requireWhatIsRead(fields);
        if (!isNew) {
            content_.rows[place->second] = row;
            return;
        }
        if (content_.rows.size() >= kMostRowsOfTable) refuse("Table " + std::string(table_.name) + " is full");
        content_.rows.push_back(row);
    }

    void remove(const TableRow& row) {
        const Key key = keyOf(table_, row);
        if (!given_.insert(key).second)
            refuse("Table " + std::string(table_.name) + " has " + nameOf(row) + " already");
        if (table_.rowSet == RowSet::Fixed)
            refuse("Table " + std::string(table_.name) + " can't do without " + nameOf(row));
        const auto place = places_.find(key);
        if (place == places_.end()) refuse("A new file has no such row");
        removed_.insert(place->second);
    }

    TableContent& content_;
    const Table& table_;
    std::map<Key, std::size_t> places_;  ///< of a new file's rows
    std::set<Key> given_;
    std::set<std::size_t> removed_;
};

/// Takes a text line by line.
class Reader {
 public:
    [[nodiscard]] int lineNumber() const { return lineNumber_; }

    ConfigurationContent read(std::string_view text) {
        if (nextLine(text) != kTextFormMark) refuse("The first line must be \"" + std::string(kTextFormMark) + "\"");
        while (!text.empty()) takeLine(nextLine(text));
        for (auto& [table, section] : sections_) section.finish();
        return std::move(content_);
    }

 private:
    std::string_view nextLine(std::string_view& text) {
        ++lineNumber_;
        std::string_view line = take(text, std::min(text.find('\n'), text.size()));
        if (!text.empty()) text.remove_prefix(1);
        if (line.ends_with('\r')) line.remove_suffix(1);
        return line;
    }

    void takeLine(std::string_view line) {
        skipBlanks(line);
        if (line.empty() || line.front() == '#') return;
        if (line.front() == '[') {
            openSection(line);
        } else if (current_ == nullptr) {
            refuse("There is no [table] above this line");
        } else {
            current_->addLine(line);
        }
    }

    void openSection(std::string_view line) {
        while (isBlank(line.back())) line.remove_suffix(1);
        if (line.back() != ']') refuse("A section is a table's name in brackets and nothing else");
        const std::string_view name = line.substr(1, line.size() - 2);
        for (TableContent& table : content_.tables) {
            if (!sameName(table.table->name, name)) continue;
            const auto [section, isNew] = sections_.try_emplace(table.table, table);
            if (!isNew) refuse("Table " + std::string(table.table->name) + " has a section already");
            current_ = &section->second;
            return;
        }
        refuse("There is no table \"" + std::string(name) + "\"");
    }

    ConfigurationContent content_ = contentOfNewFile();
    std::map<const Table*, Section> sections_;
    Section* current_ = nullptr;
    int lineNumber_ = 0;
};

}  // namespace

TextFormResult readTextForm(std::string_view text, std::string_view fileName) {
    Reader reader;
    try {
        return {.content = reader.read(text), .refusal = {}};
    } catch (const Refusal& refusal) {
        return {
            .content = std::nullopt,
            .refusal = std::string(fileName) + ":" + std::to_string(reader.lineNumber()) + ": " + refusal.reason + "."};
    }
}

}  // namespace qrv
