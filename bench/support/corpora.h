#pragma once

// What the compression benchmarks work on: five kinds of data of one MiB each, some degenerate ones
// and small ones. Text and the executable come from files that every Debian machine has; where one is
// missing, generated data takes its place, with a notice on stderr. The rest is always generated,
// from fixed seeds. Code page 1251 is written as bytes of that page.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "base/byte_order.h"
#include "base/cp1251.h"

namespace corpora {

constexpr std::size_t kSize = 1 << 20;

struct Corpus {
    const char* name;
    std::string bytes;
};

// A small generator whose sequence is the same everywhere.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}
    std::uint32_t Next() {
        state_ = state_ * 6364136223846793005u + 1442695040888963407u;
        return static_cast<std::uint32_t>(state_ >> 33);
    }
    std::size_t Below(std::size_t limit) { return Next() % limit; }
    // Small numbers are much more frequent than large ones, as the ranks of words are.
    std::size_t SkewedBelow(std::size_t limit) { return Below(Below(Below(limit) + 1) + 1); }

private:
    std::uint64_t state_;
};

inline std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// The bytes again and again up to kSize. The copies lie further apart than any window here.
inline std::string Cycled(const std::string& bytes) {
    std::string result;
    while (result.size() < kSize) result += bytes;
    result.resize(kSize);
    return result;
}

// Sentences of the given words.
template <std::size_t N>
std::string Sentences(const char* const (&words)[N], std::uint64_t seed) {
    Random random(seed);
    std::string text;
    while (text.size() < kSize) {
        for (std::size_t left = 4 + random.Below(14); left > 0; --left) {
            text += words[random.SkewedBelow(N)];
            text += left == 1 ? "." : random.Below(9) == 0 ? ", " : " ";
        }
        text += random.Below(5) == 0 ? "\r\n" : " ";
    }
    text.resize(kSize);
    return text;
}

inline std::string GeneratedEnglish() {
    static const char* const words[] = {
        "the",      "of",      "and",     "to",         "a",         "in",      "that",
        "is",       "work",    "for",     "license",    "any",       "this",    "you",
        "or",       "as",      "not",     "program",    "with",      "by",      "software",
        "copy",     "be",      "source",  "it",         "code",      "may",     "such",
        "under",    "terms",   "covered", "distribute", "which",     "from",    "rights",
        "other",    "version", "if",      "must",       "general",   "public",  "conditions",
        "party",    "notice",  "patent",  "modified",   "including", "without", "warranty",
        "provided", "use"};
    return Sentences(words, 1);
}

inline std::string Text() {
    std::string text;
    for (const char* name : {"GPL-3", "Apache-2.0", "MPL-2.0", "LGPL-2.1", "GFDL-1.3", "GPL-2",
                             "Artistic", "LGPL-3", "MPL-1.1", "BSD", "GPL-1", "CC0-1.0"}) {
        text += ReadFile(std::string("/usr/share/common-licenses/") + name);
    }
    if (text.size() >= 100000) return Cycled(text);
    std::fprintf(stderr, "corpora: no /usr/share/common-licenses, text is generated\n");
    return GeneratedEnglish();
}

// Stands in for machine code: instruction-like groups of bytes from a skewed alphabet.
inline std::string GeneratedCode() {
    Random random(2);
    std::string groups[256];
    for (auto& group : groups) {
        for (std::size_t n = 1 + random.Below(5); n > 0; --n) {
            group += static_cast<char>(random.SkewedBelow(256));
        }
    }
    std::string code;
    while (code.size() < kSize) {
        code += groups[random.SkewedBelow(256)];
        if (random.Below(4) == 0) code.append(4, static_cast<char>(random.Below(256)));
    }
    code.resize(kSize);
    return code;
}

inline std::string Executable() {
    for (const char* path : {"/bin/bash", "/usr/bin/perl", "/usr/bin/git"}) {
        std::string bytes = ReadFile(path);
        if (bytes.size() < kSize) continue;
        bytes.resize(kSize);
        return bytes;
    }
    std::fprintf(stderr, "corpora: no executable of 1 MiB found, its data is generated\n");
    return GeneratedCode();
}

// The text in a page's dress: '%' stands for a piece of it, '~' for a number.
inline std::string Html() {
    static const char* const elements[] = {
        "<p class=\"body\">%</p>\n", "<a href=\"/licences/~.html\" title=\"Section ~\">%</a><br>\n",
        "<div id=\"s~\">%</div>\n",
        "<tr bgcolor=\"#FFFFFF\"><td width=\"120\">~</td><td align=\"right\">%</td></tr>\n"};
    const std::string text = Text();
    Random random(3);
    std::string html = "<!DOCTYPE html>\n<html>\n<head><title>Licences</title></head>\n<body>\n";
    for (std::size_t at = 0; html.size() < kSize;) {
        const std::size_t length = 20 + random.Below(160);
        for (const char* c = elements[random.Below(4)]; *c; ++c) {
            switch (*c) {
                case '%':
                    html.append(text, at, length);
                    break;
                case '~':
                    html += std::to_string(random.Below(100000));
                    break;
                default:
                    html += *c;
            }
        }
        at = (at + length) % (text.size() / 2);
    }
    html.resize(kSize);
    return html;
}

// Sentences of Russian stems and endings, in code page 1251.
inline std::string Cyrillic() {
    using kit::Cp1251;
    static constexpr auto kStems = Cp1251(
        u"систем данн защит сообщен параметр пользовател файл запис ключ сертификат программ "
        u"подпис доступ ошибк настройк значен устройств сервер документ обработк проверк прав "
        u"информац безопасност компьютер служб адрес сет шифрован модул врем имен работ ресурс "
        u"событ администратор групп каталог парол библиотек процесс версия результат функц "
        u"соединен хранен режим выполнен команд област рабоч контрол состоян отчёт журнал ");
    static constexpr auto kEndings = Cp1251(
        u"а и ы ов ами ам ой у ом е ах ия ий ием ного ный ная ные ных ить ает ется ован ость ");
    static constexpr auto kSmall = Cp1251(
        u"и в на не с по для что при это из как от к или если до его быть только также может ");
    const auto split = [](const char* list) {
        std::vector<std::string> words(1);
        for (; *list; ++list) {
            if (*list == ' ') {
                words.emplace_back();
            } else {
                words.back() += *list;
            }
        }
        words.pop_back();
        return words;
    };
    const auto stems = split(kStems.data());
    const auto endings = split(kEndings.data());
    const auto small = split(kSmall.data());
    Random random(4);
    std::string text;
    while (text.size() < kSize) {
        for (std::size_t left = 3 + random.Below(12); left > 0; --left) {
            if (random.Below(3) == 0) text.append(small[random.SkewedBelow(small.size())]) += ' ';
            text += stems[random.Below(random.Below(stems.size()) + 1)];
            text += endings[random.Below(random.Below(endings.size()) + 1)];
            text += left == 1 ? "." : random.Below(8) == 0 ? ", " : " ";
        }
        text += random.Below(4) == 0 ? "\r\n" : " ";
    }
    text.resize(kSize);
    return text;
}

// Fixed records of 64 bytes: number, time, kind, amounts, address, a name padded with blanks.
inline std::string Records() {
    static const char* const names[] = {"server", "client", "gateway", "printer", "archive",
                                        "backup", "mail",   "proxy",   "scanner", "terminal"};
    Random random(5);
    std::string records;
    std::uint32_t number = 100000;
    std::uint32_t time = 1100000000;
    while (records.size() < kSize) {
        char record[64] = {};
        kit::StoreLe32(record, number += 1 + (random.Below(10) == 0));
        kit::StoreLe32(record + 4, time += static_cast<std::uint32_t>(random.Below(90)));
        kit::StoreLe16(record + 8, static_cast<std::uint16_t>(random.SkewedBelow(12)));
        kit::StoreLe32(record + 12, static_cast<std::uint32_t>(random.SkewedBelow(1000000)));
        kit::StoreLe32(record + 16, 0x0A000000u + static_cast<std::uint32_t>(random.Below(2048)));
        kit::StoreLe32(record + 20, static_cast<std::uint32_t>(random.Below(4) == 0));
        std::string name = names[random.SkewedBelow(10)];
        name += std::to_string(random.Below(100));
        name.resize(32, ' ');
        name.copy(record + 24, 32);
        kit::StoreLe32(record + 60, random.Next());
        records.append(record, sizeof record);
    }
    records.resize(kSize);
    return records;
}

inline std::vector<Corpus> All() {
    return {{"text", Text()},
            {"executable", Executable()},
            {"html", Html()},
            {"cp1251", Cyrillic()},
            {"records", Records()}};
}

// Degenerate data: runs let every comparison go its full length, and the ramp, whose long keys
// come in ascending order, turns a search tree into a list.
inline std::vector<Corpus> Degenerate() {
    std::string ramp;
    for (std::uint32_t i = 0; ramp.size() < kSize; ++i) {
        const unsigned char group[] = {'k', static_cast<unsigned char>(i >> 8),
                                       static_cast<unsigned char>(i)};
        ramp.append(reinterpret_cast<const char*>(group), sizeof group);
    }
    ramp.resize(kSize);
    std::string random_bytes(kSize, '\0');
    Random random(6);
    for (char& c : random_bytes) c = static_cast<char>(random.Next());
    std::string periodic;
    while (periodic.size() < kSize) periodic += "abcdefg";
    periodic.resize(kSize);
    return {{"zeros", std::string(kSize, '\0')},
            {"period 7", periodic},
            {"ascending", ramp},
            {"random", random_bytes}};
}

// What a component compresses at a time: a little text, a record or two, a page.
inline std::vector<Corpus> Small() {
    const std::string text = Text();
    return {{"16 bytes", text.substr(5000, 16)},
            {"100 bytes", text.substr(5000, 100)},
            {"1 KiB", text.substr(5000, 1 << 10)},
            {"8 KiB", text.substr(5000, 8 << 10)}};
}

}  // namespace corpora
