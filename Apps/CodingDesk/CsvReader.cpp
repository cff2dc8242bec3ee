#include "Apps/CodingDesk/CsvReader.hpp"

#include "Apps/CodingDesk/Text.hpp"

#include <algorithm>

namespace CodingDesk {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

std::size_t lineOf(std::string_view text, std::size_t offset) {
    return 1 + static_cast<std::size_t>(std::ranges::count(text.substr(0, offset), '\n'));
}

}  // namespace

CsvReader::CsvReader(std::string_view text) : text_(text) {
    if (const auto offset = firstInvalidUtf8(text)) {
        throw FileError(lineOf(text, *offset), "the text is not UTF-8");
    }
    if (text_.starts_with(byteOrderMark)) {
        offset_ = byteOrderMark.size();
    }
}

bool CsvReader::atLineEnd() const { return text_[offset_] == '\n' || text_.substr(offset_, 2) == "\r\n"; }

void CsvReader::skipLineEnd() {
    offset_ += text_[offset_] == '\n' ? 1U : 2U;
    ++line_;
}

std::optional<CsvRecord> CsvReader::next() {
    while (offset_ < text_.size() && atLineEnd()) {
        skipLineEnd();
    }
    if (offset_ >= text_.size()) {
        return std::nullopt;
    }
    CsvRecord record{line_, {}};
    while (true) {
        const bool quoted = offset_ < text_.size() && text_[offset_] == '"';
        record.fields.push_back(quoted ? quotedField() : plainField());
        if (offset_ >= text_.size()) {
            return record;
        }
        if (atLineEnd()) {
            skipLineEnd();
            return record;
        }
        ++offset_;  // the comma
    }
}

std::string CsvReader::quotedField() {
    const std::size_t openedAt = line_;
    std::string field;
    for (++offset_; offset_ < text_.size(); ++offset_) {
        const char character = text_[offset_];
        if (character == '\n') {
            ++line_;
        }
        if (character != '"') {
            field += character;
        } else if (text_.substr(offset_, 2) == "\"\"") {
            field += '"';
            ++offset_;
        } else {
            ++offset_;
            if (offset_ < text_.size() && text_[offset_] != ',' && !atLineEnd()) {
                throw FileError(line_, "text follows the closing quote of a field");
            }
            return field;
        }
    }
    throw FileError(openedAt, "a quote is opened here and never closed");
}

std::string CsvReader::plainField() {
    const std::size_t start = offset_;
    while (offset_ < text_.size() && text_[offset_] != ',' && !atLineEnd()) {
        if (text_[offset_] == '"') {
            throw FileError(line_, "a quote stands inside a field that does not begin with one");
        }
        ++offset_;
    }
    return std::string(text_.substr(start, offset_ - start));
}

}  // namespace CodingDesk
