// The text forms of ranges and lists. Only this file knows Boost: Asio for the dotted text of an
// address, Format for what is laid out around it. Asio starts Winsock when the library is loaded.

#include <boost/asio/ip/address_v4.hpp>
#include <boost/format.hpp>
#include <string>

#include "net/ip_range.h"
#include "net/ip_range_list.h"
#include "net/long_list.h"
#include "text/qel_string.h"

namespace {

constexpr char kNoAddress[] = "0.0.0.0";  // what most forms say for an empty list

// Throws boost::system::system_error when the conversion fails.
std::string AddressText(ulong32 address) {
    return boost::asio::ip::address_v4(address).to_string();
}

// The texts of all elements, `separator` between two.
template <typename List, typename ToText>
std::string Join(const List& list, const char* separator, ToText to_text) {
    std::string text;
    for (const auto& element : list) {
        if (&element != &list.front()) text += separator;
        text += to_text(element);
    }
    return text;
}

// The addresses, each laid out by `column`, a format of one string.
std::string JoinAddresses(const CQELLongList& list, const char* separator, const char* column) {
    if (list.empty()) return kNoAddress;
    boost::format format(column);
    return Join(list, separator,
                [&](ulong32 address) { return (format % AddressText(address)).str(); });
}

std::string SizeText(const CQELRangeIPList& list) {
    return (boost::format("rl: size=%1%") % list.size()).str();
}

}  // namespace

const std::string CQELRangeIP::GetItemIpString(ulong32 style) const {
    if (IsPoint()) return AddressText(from);
    // Quirk: any other style runs the addresses together, "1.0.0.11.0.0.9". Such texts are compared
    // with stored ones. Pinned by RangeText.RunsTogetherInAnUnknownStyle.
    const char* const separator = style == 1 ? "-" : style == 2 ? " - " : "";
    return AddressText(from) + separator + AddressText(to);
}

const std::string CQELRangeIPList::GetItemIpString() const {
    if (empty()) return kNoAddress;
    return front().GetItemIpString(1) + (size() > 1 ? "..." : "");
}

const std::string CQELRangeIPList::GetRangeListIpString() const {
    if (empty()) return kNoAddress;
    return Join(*this, ", ", [](const CQELRangeIP& range) { return range.GetItemIpString(1); });
}

const std::string CQELRangeIPList::DumpRangeIpList(ulong32 style) const {
    if (style == 1) {
        return SizeText(*this) + Join(*this, ",", [](const CQELRangeIP& range) {
                   return " " + AddressText(range.from) + "-" + AddressText(range.to);
               });
    }
    if (style != 2) return "";
    return Join(*this, "",
                [](const CQELRangeIP& range) { return range.GetItemIpString(2) + "; "; });
}

void CQELRangeIPList::DumpIDIPList(CQELString& out) const {
    boost::format entry(" %08X-%s");
    const std::string entries = Join(*this, ",", [&](const CQELRangeIP& pair) {
        return (entry % pair.from % AddressText(pair.to)).str();
    });
    out += (SizeText(*this) + entries + "\r\n").c_str();
}

const std::string CQELLongList::FormatIPString(ulong32 flags) const {
    enum : ulong32 { kComma = 1, kColumns = 2, kSemicolon = 4 };
    const char* const separator = flags & kSemicolon ? ";" : flags & kComma ? ", " : " ";
    return JoinAddresses(*this, separator, flags & kColumns ? "%15s" : "%s");
}

const std::string CQELLongList::GetFullIPString(bool flag, int mode) const {
    // Quirk: the flag aligns left in mode 1 and puts commas in any other, so that no mode has both.
    // Reports are laid out by it. Pinned by RangeText.GivesTheFlagOfFullTextTwoRoles.
    if (mode == 1) return JoinAddresses(*this, " ", flag ? "%-15s" : "%15s");
    return JoinAddresses(*this, flag ? ", " : " ", "%s");
}
