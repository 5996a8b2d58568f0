// address_filter LIST [ADDRESS...]: tells which addresses a list of subnets and ranges holds.
//
// LIST is a text file with an entry a line; "#" begins a comment:
//   192.168.0.0/16             a subnet, by the length of its mask
//   10.0.0.0/255.255.240.0     or by the mask itself
//   172.16.0.10-172.16.0.99    a range
//   8.8.8.8                    a single address
// The addresses come from the command line or, when there are none, from standard input, any number
// on a line. Shows the list first, as the library writes it, then an answer for every address.
//
// Ends with 0, with 2 when an address could not be read, or with 1 and a message when the list could
// not: no rule is better than half of one.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include <qelkit2.h>

#include <windows.h>

#include "../console/utf8.h"

namespace {

// Why the program gives up.
struct Refusal {
    std::string text;
};

// --- Reading the list ------------------------------------------------------------------------------

bool ReadAddress(const std::string& text, unsigned long& address) {
    return CQELIpToLong(text.c_str(), &address) == 0;
}

// A mask is a length, 0 to 32, or an address whose ones all come before its zeros.
bool ReadMask(const std::string& text, unsigned long& mask) {
    if (ReadAddress(text, mask)) return (~mask & (~mask + 1)) == 0;
    char* end = nullptr;
    const unsigned long length = std::strtoul(text.c_str(), &end, 10);
    if (text.find_first_not_of("0123456789") != std::string::npos || text.empty() || length > 32) {
        return false;
    }
    mask = length == 0 ? 0 : ~0UL << (32 - length);
    return true;
}

bool ReadEntry(const std::string& text, CQELRangeIP& range) {
    const std::size_t sign = text.find_first_of("/-");
    if (!ReadAddress(text.substr(0, sign), range.from)) return false;
    range.to = range.from;
    if (sign == std::string::npos) return true;
    const std::string rest = text.substr(sign + 1);
    if (text[sign] == '-') return ReadAddress(rest, range.to) && range.from <= range.to;
    unsigned long mask;
    if (!ReadMask(rest, mask)) return false;
    range.from &= mask;
    range.to = range.from | ~mask;
    return true;
}

// The line without its comment and without blanks.
std::string Bare(std::string line) {
    line.erase(line.find('#') == std::string::npos ? line.size() : line.find('#'));
    std::string bare;
    for (const char c : line) {
        if (std::strchr(" \t\r", c) == nullptr) bare += c;
    }
    return bare;
}

std::string ReadFile(const char* path) {
    const CQELFile file(path, "rb", true);
    if (!file.IsOpen()) throw Refusal{"the drive of " + Utf8(path) + " is not available"};
    std::string text;
    char block[4096];
    while (const unsigned long got = file.Read(block, sizeof block)) text.append(block, got);
    return text;
}

CQELRangeIPList ReadList(const char* path) {
    std::istringstream lines(ReadFile(path));
    CQELRangeIPList entries;
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        const std::string entry = Bare(line);
        CQELRangeIP range;
        if (entry.empty()) continue;
        if (!ReadEntry(entry, range)) {
            throw Refusal{"line " + std::to_string(number) + " is no entry: " + Utf8(line.c_str())};
        }
        entries.push_back(range);
    }
    CQELRangeIPList list;
    list += entries;  // every entry once
    return list;
}

// --- Showing and answering ---------------------------------------------------------------------------

void Show(CQELRangeIPList& list) {
    constexpr std::size_t kLong = 20;
    unsigned int length = 0;
    unsigned char* bytes = nullptr;
    list.Save(length, bytes);
    std::printf("list:       %s\n", list.GetItemIpString().c_str());
    if (list.size() <= kLong) {
        std::printf("ranges:     %s\n", list.GetRangeListIpString().c_str());
        std::printf("dump:       %s\n", list.DumpRangeIpList(1).c_str());
    }
    std::printf("addresses:  %u\n", static_cast<unsigned int>(list.Size()));
    std::printf("serialized: %u bytes for %zu ranges\n", length, list.size());
}

// Returns whether the text is an address.
bool Answer(const CQELRangeIPList& list, const std::string& text) {
    unsigned long address;
    if (!ReadAddress(text, address)) {
        std::printf("%s: no address\n", text.c_str());
        return false;
    }
    const CQELRangeIP* range = list.IsCross(CQELRangeIP(address, 0), nullptr);
    std::printf("%s: %s\n", text.c_str(),
                range ? ("in " + range->GetItemIpString(1)).c_str() : "not in the list");
    return true;
}

bool AnswerInput(const CQELRangeIPList& list) {
    bool all_read = true;
    for (std::string text; std::cin >> text;) all_read &= Answer(list, text);
    return all_read;
}

}  // namespace

int main(int argc, char** argv) {
    SetConsoleOutputCP(CP_UTF8);
    if (argc < 2) {
        std::printf("usage: address_filter LIST [ADDRESS...]\n");
        return 1;
    }
    try {
        CQELRangeIPList list = ReadList(argv[1]);
        Show(list);
        bool all_read = argc > 2 || AnswerInput(list);
        for (int i = 2; i < argc; ++i) all_read &= Answer(list, argv[i]);
        return all_read ? 0 : 2;
    } catch (const XQELFile& failure) {
        std::printf("failed: %s\n", Utf8(GetErrorString("", failure)).c_str());
    } catch (const Refusal& refusal) {
        std::printf("failed: %s\n", refusal.text.c_str());
    } catch (const std::bad_alloc&) {
        std::printf("failed: not enough memory for the list\n");
    }
    return 1;
}
