#include "store/Recordset.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>
#include <utility>

#include "platform/RunTimeError.h"
#include "store/RowReader.h"
#include "store/TableWriter.h"

namespace qrv {

namespace {

constexpr int kKeyBits = 64;
constexpr int kNumberBits = 16;
constexpr std::int64_t kBeforeAllRows = std::numeric_limits<std::int64_t>::min();

std::size_t ordinal(const Table& table, std::string_view column) {
    return static_cast<std::size_t>(table.columnIndex(column));
}

bool isText(ColumnType type) { return type == ColumnType::Text || type == ColumnType::Memo; }

/// How many bits of a key a name takes: what its numbers leave.
int nameBits(const Table& table, const Index& index) {
    int bits = kKeyBits;
    for (std::size_t part = 0; part < index.partCount(); ++part) {
        if (!isText(table.columns[ordinal(table, index.parts[part])].type)) bits -= kNumberBits;
    }
    return bits;
}

/// A key in one number whose order is the key's: 16-bit numbers biased to be without sign, a name in capitals.
class PackedKey {
 public:
    void append(std::int32_t number) {
        packed_ = packed_ << kNumberBits | static_cast<std::uint64_t>(static_cast<std::uint32_t>(number + 0x8000));
    }
    /// False: the name is longer than a key can hold.
    [[nodiscard]] bool append(std::string_view name, int bits) {
        if (name.size() * 8 > static_cast<std::size_t>(bits)) return false;
        for (int i = 0; i < bits / 8; ++i) {
            const char c = static_cast<std::size_t>(i) < name.size() ? name[static_cast<std::size_t>(i)] : '\0';
            const char capital = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
            packed_ = packed_ << 8U | static_cast<unsigned char>(capital);
        }
        return true;
    }
    [[nodiscard]] std::uint64_t packed() const { return packed_; }

 private:
    std::uint64_t packed_ = 0;
};

}  // namespace

Recordset::Recordset(const Table& table, Sqlite& file, bool writable, Missed missed)
    : table_(&table), missed_(missed), orders_(table.indexes.size()) {
    if (writable) writer_ = std::make_unique<TableWriter>(table, file);
    load(file);
    standAt(stored_, stored_.begin());
}

Recordset::~Recordset() = default;
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;

void Recordset::load(Sqlite& file) {
    RowReader reader(*table_, file);
    while (reader.next()) {
        Row& row = keep(reader.rowId(), reader.takeValues());
        stored_.push_back({0, row.added, &row});
        for (std::size_t i = 0; i < orders_.size(); ++i) {
            const auto key = keyOf(table_->indexes[i], row.values);
            if (!key) refuseRow(file, *table_, row.id, "has a name too long for its key");
            orders_[i].push_back({*key, row.added, &row});
        }
    }
    for (std::size_t i = 0; i < orders_.size(); ++i) {
        Order& order = orders_[i];
        if (!std::is_sorted(order.begin(), order.end())) std::sort(order.begin(), order.end());
        const auto repeated = std::adjacent_find(order.begin(), order.end(),
                                                 [](const Entry& a, const Entry& b) { return a.key == b.key; });
        if (table_->indexes[i].unique && repeated != order.end()) {
            refuseRow(file, *table_, std::next(repeated)->row->id, "repeats a key");
        }
    }
}

Recordset::Row& Recordset::keep(std::int64_t id, Values values) {
    // The file gives the number of a last row that was deleted again; a walk that stands there is to find the new row.
    Row row{id, ++lastAdded_, std::move(values)};
    if (unused_.empty()) return rows_.emplace_back(std::move(row));
    Row& place = *unused_.back();
    unused_.pop_back();
    place = std::move(row);
    return place;
}

Recordset::Entry Recordset::entryOf(const Index& index, Row& row) const {
    const auto key = keyOf(index, row.values);
    if (!key) throw RunTimeError(ErrorNumber::FieldTooSmall);
    return {*key, row.added, &row};
}

// Absent: a name is longer than a key can hold.
std::optional<std::uint64_t> Recordset::keyOf(const Index& index, const Values& row) const {
    PackedKey key;
    for (std::size_t part = 0; part < index.partCount(); ++part) {
        const Value& value = row[ordinal(*table_, index.parts[part])];
        if (const auto* name = std::get_if<std::string>(&value)) {
            if (!key.append(*name, nameBits(*table_, index))) return std::nullopt;
        } else {
            const auto* number = std::get_if<std::int32_t>(&value);
            key.append(number == nullptr ? 0 : *number);
        }
    }
    return key.packed();
}

bool Recordset::holdsKey(std::size_t index, const Values& row) const {
    const auto key = keyOf(table_->indexes[index], row);
    if (!key) throw RunTimeError(ErrorNumber::FieldTooSmall);
    const Order& order = orders_[index];
    const auto found = std::lower_bound(order.begin(), order.end(), Entry{*key, kBeforeAllRows, nullptr});
    return found != order.end() && found->key == *key;
}

void Recordset::enterInOrders(Row& row) {
    for (std::size_t i = 0; i < orders_.size(); ++i) {
        const Entry entry = entryOf(table_->indexes[i], row);
        orders_[i].insert(std::upper_bound(orders_[i].begin(), orders_[i].end(), entry), entry);
    }
}

void Recordset::leaveOrders(Row& row) {
    for (std::size_t i = 0; i < orders_.size(); ++i) {
        const Entry entry = entryOf(table_->indexes[i], row);
        orders_[i].erase(std::lower_bound(orders_[i].begin(), orders_[i].end(), entry));
    }
}

void Recordset::standAt(const Order& order, Order::const_iterator place) {
    const bool isRow = place != order.end();
    current_ = isRow ? place->row : nullptr;
    state_ = isRow ? State::OnRow : State::AtEnd;
    place_ = static_cast<std::size_t>(place - order.begin());
}

void Recordset::setIndex(std::string_view name) {
    for (std::size_t i = 0; i < table_->indexes.size(); ++i) {
        if (!sameName(table_->indexes[i].name, name)) continue;
        index_ = static_cast<int>(i);
        return;
    }
    throw RunTimeError(ErrorNumber::ItemNotFound);
}

void Recordset::moveFirst() {
    cancelUpdate();
    if (stored_.empty()) raiseNoRow();
    standAt(currentOrder(), currentOrder().begin());
}

Recordset::Entry Recordset::placeOfCurrent() const {
    if (index_ < 0) return {0, current_->added, current_};
    return entryOf(table_->indexes[static_cast<std::size_t>(index_)], *current_);
}

void Recordset::moveBehind(const Order& order) {
    if (state_ == State::AtEnd || state_ == State::NoRow) raiseNoRow();
    const Entry place = state_ == State::Deleted ? deleted_ : placeOfCurrent();
    standAt(order, std::upper_bound(order.begin(), order.end(), place));
}

void Recordset::seek(std::span<const KeyPart> key) {
    cancelUpdate();
    if (index_ < 0) throw RunTimeError(ErrorNumber::NoCurrentIndex);
    const Order& order = currentOrder();
    const auto wanted = wantedKey(table_->indexes[static_cast<std::size_t>(index_)], key);
    auto found = order.end();
    if (wanted) found = std::lower_bound(order.begin(), order.end(), Entry{*wanted, kBeforeAllRows, nullptr});
    noMatch_ = found == order.end() || found->key != *wanted;
    if (!noMatch_) {
        standAt(order, found);
    } else if (missed_ == Missed::LosesRow) {
        current_ = nullptr;
        state_ = State::NoRow;
    }
}

// Absent: no row can have this key.
std::optional<std::uint64_t> Recordset::wantedKey(const Index& index, std::span<const KeyPart> key) const {
    assert(key.size() == index.partCount());
    PackedKey wanted;
    bool fits = true;
    for (std::size_t part = 0; part < key.size(); ++part) {
        const ColumnType type = table_->columns[ordinal(*table_, index.parts[part])].type;
        const auto* number = std::get_if<std::int32_t>(&key[part]);
        if (isText(type) == (number != nullptr)) throw RunTimeError(ErrorNumber::DataTypeConversion);
        if (number == nullptr) {
            fits = wanted.append(std::get<std::string_view>(key[part]), nameBits(*table_, index)) && fits;
            continue;
        }
        const NumberRange range = rangeOf(type);
        if (*number < range.least || *number > range.greatest) throw RunTimeError(ErrorNumber::Overflow);
        wanted.append(*number);
    }
    return fits ? std::optional(wanted.packed()) : std::nullopt;
}

std::int32_t Recordset::rowCount() const { return static_cast<std::int32_t>(stored_.size()); }

std::vector<Recordset::Values> Recordset::allRows() const {
    std::vector<Values> rows;
    rows.reserve(stored_.size());
    for (const Entry& entry : stored_) rows.push_back(entry.row->values);
    return rows;
}

void Recordset::edit() {
    cancelUpdate();
    if (!writer_) throw RunTimeError(ErrorNumber::ReadOnlyDatabase);
    if (state_ != State::OnRow) throw RunTimeError(ErrorNumber::NoCurrentRecord);
    buffer_ = current_->values;
    pending_ = Pending::Edit;
}

void Recordset::addNew() {
    cancelUpdate();
    if (!writer_) throw RunTimeError(ErrorNumber::ReadOnlyDatabase);
    buffer_.assign(table_->columns.size(), Value{});
    pending_ = Pending::Add;
}

void Recordset::checkColumns(const Values& row) const {
    for (std::size_t i = 0; i < table_->columns.size(); ++i) {
        const Column& column = table_->columns[i];
        const auto* text = std::get_if<std::string>(&row[i]);
        if (text != nullptr && countsAsEmpty(*text) && !column.emptyAllowed) {
            throw RunTimeError(ErrorNumber::ZeroLengthString,
                               "Field '" + std::string(column.name) + "' can't hold an empty text.");
        }
        const bool isNull = std::holds_alternative<std::monostate>(row[i]);
        if (isNull && isKeyPart(*table_, column.name)) throw RunTimeError(ErrorNumber::NullInKey);
    }
}

// A key that the row has already is no repetition: `known` is the row as it stands in the table, or null.
void Recordset::checkKeys(const Values& row, const Row* known) const {
    for (std::size_t i = 0; i < orders_.size(); ++i) {
        const Index& index = table_->indexes[i];
        if (!index.unique || (known != nullptr && !changesKey(index, row, known->values))) continue;
        if (holdsKey(i, row)) throw RunTimeError(ErrorNumber::DuplicateKey);
    }
}

bool Recordset::changesKey(const Index& index, const Values& after, const Values& before) const {
    for (std::size_t part = 0; part < index.partCount(); ++part) {
        const std::size_t column = ordinal(*table_, index.parts[part]);
        if (after[column] != before[column]) return true;
    }
    return false;
}

bool Recordset::changesAnyKey(const Values& after, const Values& before) const {
    return std::any_of(table_->indexes.begin(), table_->indexes.end(),
                       [&](const Index& index) { return changesKey(index, after, before); });
}

void Recordset::update() {
    switch (pending_) {
        case Pending::None: throw RunTimeError(ErrorNumber::UpdateWithoutEdit);
        case Pending::Edit: writeEdit(); break;
        case Pending::Add: writeAddition(); break;
    }
    pending_ = Pending::None;
}

void Recordset::writeEdit() {
    checkColumns(buffer_);
    checkKeys(buffer_, current_);
    writer_->update(current_->id, current_->values, buffer_);
    const bool moves = changesAnyKey(buffer_, current_->values);
    if (moves) leaveOrders(*current_);
    std::swap(current_->values, buffer_);
    if (moves) enterInOrders(*current_);
}

void Recordset::writeAddition() {
    checkColumns(buffer_);
    checkKeys(buffer_, nullptr);
    const std::int64_t id = writer_->insert(buffer_);
    Row& row = keep(id, std::move(buffer_));
    stored_.push_back({0, row.added, &row});
    enterInOrders(row);
}

void Recordset::deleteRow() {
    cancelUpdate();
    if (!writer_) throw RunTimeError(ErrorNumber::ReadOnlyDatabase);
    if (state_ != State::OnRow) throw RunTimeError(ErrorNumber::NoCurrentRecord);
    writer_->remove(current_->id);
    deleted_ = placeOfCurrent();
    leaveOrders(*current_);
    stored_.erase(std::lower_bound(stored_.begin(), stored_.end(), Entry{0, current_->added, nullptr}));
    *current_ = {};
    unused_.push_back(current_);
    current_ = nullptr;
    state_ = State::Deleted;
}

void Recordset::raiseNoRow() { throw RunTimeError(ErrorNumber::NoCurrentRecord); }

void Recordset::setValue(std::size_t column, Value value) {
    if (pending_ == Pending::None) throw RunTimeError(ErrorNumber::UpdateWithoutEdit);
    const Column& definition = table_->columns[column];
    if (const auto* number = std::get_if<std::int32_t>(&value)) {
        const NumberRange range = rangeOf(definition.type);
        if (*number < range.least || *number > range.greatest) throw RunTimeError(ErrorNumber::Overflow);
    }
    // The file has no place for such, and would not open again.
    const auto* real = std::get_if<float>(&value);
    if (real != nullptr && !std::isfinite(*real)) throw RunTimeError(ErrorNumber::Overflow);
    const auto* text = std::get_if<std::string>(&value);
    if (text != nullptr && definition.size > 0 && text->size() > static_cast<std::size_t>(definition.size)) {
        throw RunTimeError(ErrorNumber::FieldTooSmall);
    }
    buffer_[column] = std::move(value);
}

}  // namespace qrv
