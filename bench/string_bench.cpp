// CQELString beside std::string. An append and a part must make a new body, which the standard
// string does without for short texts.

#include <algorithm>
#include <cctype>
#include <string>

#include "support/wine_bench.h"
#include "text/qel_string.h"

namespace {

constexpr std::size_t kMegabyte = 1 << 20;

// Words of lower and upper case, none of which is "needle".
std::string Prose(std::size_t size) {
    static constexpr char kWords[] = "The need for a Neat End is never Nil: \r\n";
    std::string text;
    while (text.size() < size) text += kWords;
    text.resize(size);
    return text;
}

const std::string kShort = "name.txt";
const std::string kPath = "C:\\Program Files\\Company\\Product\\settings.ini";
const std::string kLong = Prose(kMegabyte);

struct Case {
    const char* name;
    const std::string& text;
};
const Case kCases[] = {{"8 bytes", kShort}, {"46 bytes", kPath}, {"1 MiB", kLong}};

std::string Named(const char* group, const Case& c, const char* contender) {
    return std::string(group) + "/" + c.name + "/" + contender;
}

enum class Work { kWholeText, kSomeBytes };

// One operation on a CQELString and the same on a std::string, both made from the case's text.
template <typename Ours, typename Theirs>
void RunBoth(WineBench& bench, const char* group, Ours ours, Theirs theirs,
             Work work = Work::kWholeText) {
    for (const Case& c : kCases) {
        const bool is_long = work == Work::kWholeText && c.text.size() >= kMegabyte;
        const double bytes = is_long ? static_cast<double>(c.text.size()) : 0;
        CQELString our_text(c.text.c_str());
        std::string their_text = c.text;
        bench.Run(
            Named(group, c, "qelkit"), [&] { ours(our_text); }, bytes);
        bench.Run(
            Named(group, c, "std::string"), [&] { theirs(their_text); }, bytes);
    }
}

void Construction(WineBench& bench) {
    RunBoth(
        bench, "string construct",
        [](CQELString& s) { KeepValue(CQELString(static_cast<const char*>(s))); },
        [](std::string& s) { KeepValue(std::string(s.c_str())); });
    RunBoth(
        bench, "string copy", [](CQELString& s) { KeepValue(CQELString(s)); },
        [](std::string& s) { KeepValue(std::string(s)); }, Work::kSomeBytes);
    RunBoth(
        bench, "string append", [](CQELString& s) { KeepValue(CQELString(s) += ".bak"); },
        [](std::string& s) { KeepValue(std::string(s) += ".bak"); });
}

void Comparison(WineBench& bench) {
    RunBoth(
        bench, "string equal",
        [other = CQELString()](CQELString& s) mutable {
            if (other.Length() != s.Length()) other = static_cast<const char*>(s);
            KeepValue(s == other);
        },
        [other = std::string()](std::string& s) mutable {
            if (other.size() != s.size()) other = s.c_str();
            KeepValue(s == other);
        });
    RunBoth(
        bench, "string compare",
        [other = CQELString()](CQELString& s) mutable {
            if (other.Length() != s.Length() + 1) (other = s) += "!";
            KeepValue(s.Compare(other));
        },
        [other = std::string()](std::string& s) mutable {
            if (other.size() != s.size() + 1) (other = s) += "!";
            KeepValue(s.compare(other.c_str()));
        });
}

void Search(WineBench& bench) {
    RunBoth(
        bench, "string find character", [](CQELString& s) { KeepValue(s.Find('#')); },
        [](std::string& s) { KeepValue(s.find('#')); });
    RunBoth(
        bench, "string find text", [](CQELString& s) { KeepValue(s.Find("needle")); },
        [](std::string& s) { KeepValue(s.find("needle")); });
    RunBoth(
        bench, "string middle", [](CQELString& s) { KeepValue(s.Mid(2, 20)); },
        [](std::string& s) { KeepValue(s.substr(2, 20)); }, Work::kSomeBytes);
}

// What a caller of std::string writes in the absence of a member.
void ReplaceAll(std::string& text, const std::string& old, const std::string& replacement) {
    std::string result;
    std::size_t done = 0;
    for (std::size_t at; (at = text.find(old, done)) != std::string::npos; done = at + old.size()) {
        result.append(text, done, at - done).append(replacement);
    }
    text = result.append(text, done);
}

void Editing(WineBench& bench) {
    RunBoth(
        bench, "string replace text",
        [](CQELString& s) {
            CQELString copy(s);
            KeepValue(copy.Replace("Neat", "tidy"));
        },
        [](std::string& s) {
            std::string copy(s);
            ReplaceAll(copy, "Neat", "tidy");
            KeepValue(copy);
        });
    RunBoth(
        bench, "string replace character", [](CQELString& s) { KeepValue(s.Replace('#', '$')); },
        [](std::string& s) {
            std::replace(s.begin(), s.end(), '#', '$');
            KeepValue(s);
        });
    RunBoth(
        bench, "string lower case", [](CQELString& s) { KeepValue(s.MakeLower()); },
        [](std::string& s) {
            for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
            KeepValue(s);
        });
    RunBoth(
        bench, "string lower case, Russian", [](CQELString& s) { KeepValue(s.LowerRus()); },
        [](std::string& s) {
            for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
            KeepValue(s);
        });
}

}  // namespace

int main() {
    WineBench bench;
    Construction(bench);
    Comparison(bench);
    Search(bench);
    Editing(bench);
    return bench.Print();
}
