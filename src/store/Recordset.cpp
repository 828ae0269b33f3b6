#include "store/Recordset.h"

#include <cassert>

#include "platform/RunTimeError.h"
#include "store/RowReader.h"
#include "store/TableWriter.h"

namespace qrv {

namespace {

void appendBigEndian(std::string& key, std::uint64_t bits, int byteCount) {
    for (int shift = (byteCount - 1) * 8; shift >= 0; shift -= 8) key += static_cast<char>(bits >> shift & 0xFFU);
}

// Byte order is the key's order: numbers biased to be without sign, names without regard to case.
void appendKeyPart(std::string& key, const Column& column, const Value& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        for (const char c : *text) key += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
        key += '\0';
        return;
    }
    assert(column.type == ColumnType::Integer);
    const std::int32_t* number = std::get_if<std::int32_t>(&value);
    appendBigEndian(key, static_cast<std::uint64_t>((number == nullptr ? 0 : *number) + 0x8000), 2);
}

// Behind the key stands the row's number: rows of one key follow each other as they were added.
std::string placeOf(std::string key, std::int64_t rowId) {
    appendBigEndian(key, static_cast<std::uint64_t>(rowId), 8);
    return key;
}

std::size_t ordinal(const Table& table, std::string_view column) {
    return static_cast<std::size_t>(table.columnIndex(column));
}

bool isText(ColumnType type) { return type == ColumnType::Text || type == ColumnType::Memo; }

}  // namespace

Recordset::Recordset(const Table& table, Sqlite& file, bool writable, Missed missed)
    : table_(&table), missed_(missed), orders_(table.indexes.size()) {
    if (writable) writer_ = std::make_unique<TableWriter>(table, file);
    load(file);
    if (!rows_.empty()) standOn(&rows_.begin()->second);
}

Recordset::~Recordset() = default;
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;

void Recordset::load(Sqlite& file) {
    RowReader reader(*table_, file);
    while (reader.next()) {
        Row& row = rows_.emplace_hint(rows_.end(), reader.rowId(), Row{})->second;
        row.id = reader.rowId();
        row.values = reader.takeValues();
        for (std::size_t i = 0; i < orders_.size(); ++i) {
            if (table_->indexes[i].unique && holdsKey(table_->indexes[i], i, row)) reader.refuse("repeats a key");
        }
        enterInOrders(row);
    }
}

std::string Recordset::keyOf(const Index& index, const Row& row) const {
    std::string key;
    for (std::size_t part = 0; part < index.partCount(); ++part) {
        const std::size_t column = ordinal(*table_, index.parts[part]);
        appendKeyPart(key, table_->columns[column], row.values[column]);
    }
    return key;
}

bool Recordset::holdsKey(const Index& index, std::size_t order, const Row& row) const {
    const std::string key = keyOf(index, row);
    const auto found = orders_[order].lower_bound(key);
    return found != orders_[order].end() && found->first.starts_with(key) && found->second != &row;
}

void Recordset::enterInOrders(Row& row) {
    for (std::size_t i = 0; i < orders_.size(); ++i) {
        orders_[i].emplace_hint(orders_[i].end(), placeOf(keyOf(table_->indexes[i], row), row.id), &row);
    }
}

void Recordset::leaveOrders(const Row& row) {
    for (std::size_t i = 0; i < orders_.size(); ++i) {
        orders_[i].erase(placeOf(keyOf(table_->indexes[i], row), row.id));
    }
}

void Recordset::standOn(Row* row) {
    current_ = row;
    state_ = State::OnRow;
    if (index_ < 0) return;
    const auto order = static_cast<std::size_t>(index_);
    inOrder_ = orders_[order].find(placeOf(keyOf(table_->indexes[order], *row), row->id));
}

void Recordset::setIndex(std::string_view name) {
    for (std::size_t i = 0; i < table_->indexes.size(); ++i) {
        if (!sameName(table_->indexes[i].name, name)) continue;
        if (index_ == static_cast<int>(i)) return;
        index_ = static_cast<int>(i);
        if (state_ == State::OnRow) standOn(current_);
        return;
    }
    throw RunTimeError(ErrorNumber::ItemNotFound);
}

void Recordset::moveFirst() {
    cancelUpdate();
    if (rows_.empty()) throw RunTimeError(ErrorNumber::NoCurrentRecord);
    if (index_ < 0) {
        standOn(&rows_.begin()->second);
        return;
    }
    inOrder_ = orders_[static_cast<std::size_t>(index_)].begin();
    current_ = inOrder_->second;
    state_ = State::OnRow;
}

void Recordset::moveNext() {
    cancelUpdate();
    if (state_ == State::AtEnd || state_ == State::NoRow) throw RunTimeError(ErrorNumber::NoCurrentRecord);
    const bool wasDeleted = state_ == State::Deleted;
    if (index_ < 0) {
        const auto next = rows_.upper_bound(wasDeleted ? placeInRows_ : current_->id);
        current_ = next == rows_.end() ? nullptr : &next->second;
    } else {
        Order& order = orders_[static_cast<std::size_t>(index_)];
        inOrder_ = wasDeleted ? order.upper_bound(placeInOrder_) : std::next(inOrder_);
        current_ = inOrder_ == order.end() ? nullptr : inOrder_->second;
    }
    state_ = current_ == nullptr ? State::AtEnd : State::OnRow;
}

void Recordset::seek(std::span<const KeyPart> key) {
    cancelUpdate();
    if (index_ < 0) throw RunTimeError(ErrorNumber::NoCurrentIndex);
    const auto order = static_cast<std::size_t>(index_);
    const Index& index = table_->indexes[order];
    assert(key.size() == index.partCount());
    std::string wanted;
    for (std::size_t part = 0; part < key.size(); ++part) {
        const Column& column = table_->columns[ordinal(*table_, index.parts[part])];
        const auto* number = std::get_if<std::int32_t>(&key[part]);
        if (isText(column.type) == (number != nullptr)) throw RunTimeError(ErrorNumber::DataTypeConversion);
        if (number != nullptr) {
            const NumberRange range = rangeOf(column.type);
            if (*number < range.least || *number > range.greatest) throw RunTimeError(ErrorNumber::Overflow);
            appendKeyPart(wanted, column, *number);
        } else {
            appendKeyPart(wanted, column, std::get<std::string>(key[part]));
        }
    }
    const auto found = orders_[order].lower_bound(wanted);
    noMatch_ = found == orders_[order].end() || !found->first.starts_with(wanted);
    if (!noMatch_) {
        inOrder_ = found;
        current_ = found->second;
        state_ = State::OnRow;
    } else if (missed_ == Missed::LosesRow) {
        current_ = nullptr;
        state_ = State::NoRow;
    }
}

std::int32_t Recordset::rowCount() const { return static_cast<std::int32_t>(rows_.size()); }

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

void Recordset::checkColumns(const Row& row) const {
    for (std::size_t i = 0; i < table_->columns.size(); ++i) {
        const Column& column = table_->columns[i];
        const auto* text = std::get_if<std::string>(&row.values[i]);
        if (text != nullptr && text->empty() && !column.emptyAllowed) {
            throw RunTimeError(ErrorNumber::ZeroLengthString,
                               "Field '" + std::string(column.name) + "' can't hold an empty text.");
        }
        const bool isNull = std::holds_alternative<std::monostate>(row.values[i]);
        if (isNull && isKeyPart(*table_, column.name)) throw RunTimeError(ErrorNumber::NullInKey);
    }
}

// A key that the row has already is no repetition: `known` is the row as it stands in the table, or null.
void Recordset::checkKeys(const Row& row, const Row* known) const {
    for (std::size_t i = 0; i < orders_.size(); ++i) {
        const Index& index = table_->indexes[i];
        if (!index.unique || (known != nullptr && keyOf(index, row) == keyOf(index, *known))) continue;
        if (holdsKey(index, i, row)) throw RunTimeError(ErrorNumber::DuplicateKey);
    }
}

bool Recordset::changesKey(const Row& after, const Row& before) const {
    for (const Index& index : table_->indexes) {
        if (keyOf(index, after) != keyOf(index, before)) return true;
    }
    return false;
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
    Row changed{current_->id, buffer_};
    checkColumns(changed);
    checkKeys(changed, current_);
    writer_->update(changed.id, current_->values, changed.values);
    if (changesKey(changed, *current_)) {
        leaveOrders(*current_);
        current_->values = std::move(changed.values);
        enterInOrders(*current_);
        standOn(current_);
    } else {
        current_->values = std::move(changed.values);
    }
}

void Recordset::writeAddition() {
    Row added{0, buffer_};
    checkColumns(added);
    checkKeys(added, nullptr);
    added.id = writer_->insert(added.values);
    Row& row = rows_[added.id];
    row = std::move(added);
    enterInOrders(row);
}

void Recordset::deleteRow() {
    cancelUpdate();
    if (!writer_) throw RunTimeError(ErrorNumber::ReadOnlyDatabase);
    if (state_ != State::OnRow) throw RunTimeError(ErrorNumber::NoCurrentRecord);
    writer_->remove(current_->id);
    placeInRows_ = current_->id;
    if (index_ >= 0) placeInOrder_ = inOrder_->first;
    leaveOrders(*current_);
    rows_.erase(current_->id);
    current_ = nullptr;
    state_ = State::Deleted;
}

const Value& Recordset::value(std::size_t column) const {
    if (pending_ != Pending::None) return buffer_[column];
    if (state_ != State::OnRow) throw RunTimeError(ErrorNumber::NoCurrentRecord);
    return current_->values[column];
}

void Recordset::setValue(std::size_t column, Value value) {
    if (pending_ == Pending::None) throw RunTimeError(ErrorNumber::UpdateWithoutEdit);
    const Column& definition = table_->columns[column];
    if (const auto* number = std::get_if<std::int32_t>(&value)) {
        const NumberRange range = rangeOf(definition.type);
        if (*number < range.least || *number > range.greatest) throw RunTimeError(ErrorNumber::Overflow);
    }
    const auto* text = std::get_if<std::string>(&value);
    if (text != nullptr && definition.size > 0 && text->size() > static_cast<std::size_t>(definition.size)) {
        throw RunTimeError(ErrorNumber::FieldTooSmall);
    }
    buffer_[column] = std::move(value);
}

}  // namespace qrv
