#include "ctl/Table.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ostream>

namespace {

/// The length of the UTF-8 sequence that a text starts with, 0 if there is none. C1 control characters, which are such
/// sequences, count as none.
std::size_t SequenceLength(std::string_view strText) {
    const auto nFirst = static_cast<std::uint8_t>(strText[0]);
    const std::size_t nLength = nFirst < 0x80   ? 1
                                : nFirst < 0xC2 ? 0
                                : nFirst < 0xE0 ? 2
                                : nFirst < 0xF0 ? 3
                                : nFirst < 0xF5 ? 4
                                                : 0;
    if (nLength > strText.size()) {
        return 0;
    }
    for (std::size_t i = 1; i < nLength; ++i) {
        if ((static_cast<std::uint8_t>(strText[i]) & 0xC0) != 0x80) {
            return 0;
        }
    }
    const bool bControl =
        nFirst < 0x20 || nFirst == 0x7F || (nFirst == 0xC2 && static_cast<std::uint8_t>(strText[1]) < 0xA0);
    return bControl ? 0 : nLength;
}

/// In characters, each of which is taken for one column wide.
std::size_t Width(const std::string& strText) {
    return static_cast<std::size_t>(std::count_if(
        strText.begin(), strText.end(), [](char c) { return (static_cast<std::uint8_t>(c) & 0xC0) != 0x80; }));
}

std::string Cell(const std::string& strText) {
    return strText.empty() ? "-" : Printable(strText);
}

}  // namespace

std::string Printable(std::string_view strText) {
    std::string strPrintable;
    while (!strText.empty()) {
        const std::size_t nLength = SequenceLength(strText);
        strPrintable += nLength == 0 ? std::string_view("?") : strText.substr(0, nLength);
        strText.remove_prefix(std::max<std::size_t>(nLength, 1));
    }
    return strPrintable;
}

std::string PrintableLines(std::string_view strText) {
    std::string strPrintable;
    for (std::size_t nEnd = strText.find('\n'); nEnd != std::string_view::npos; nEnd = strText.find('\n')) {
        strPrintable += Printable(strText.substr(0, nEnd)) + '\n';
        strText.remove_prefix(nEnd + 1);
    }
    return strPrintable + Printable(strText);
}

void WriteTable(std::ostream& objOut, const std::vector<std::vector<std::string>>& vecRow) {
    std::vector<std::size_t> vecWidth;
    for (const auto& vecCell : vecRow) {
        vecWidth.resize(std::max(vecWidth.size(), vecCell.size()));
        for (std::size_t i = 0; i < vecCell.size(); ++i) {
            vecWidth[i] = std::max(vecWidth[i], Width(Cell(vecCell[i])));
        }
    }
    for (const auto& vecCell : vecRow) {
        std::string strLine;
        for (std::size_t i = 0; i < vecCell.size(); ++i) {
            const std::string strCell = Cell(vecCell[i]);
            strLine += strCell;
            if (i + 1 < vecCell.size()) {
                strLine.append(vecWidth[i] - Width(strCell) + 2, ' ');
            }
        }
        objOut << strLine << '\n';
    }
}
