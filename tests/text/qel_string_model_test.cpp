// The operations on texts beside those of std::string: on short texts of few letters and with
// positions in and out of them, so that everything meets everything.

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <random>
#include <string>

#include "text/qel_string.h"

namespace {

using S = CQELString;

// The text and its length; an empty text has no body.
void Expect(const std::string& expected, const S& s) {
    EXPECT_EQ(expected, static_cast<const char*>(s));
    EXPECT_EQ(expected.size(), static_cast<std::size_t>(s.Length()));
    EXPECT_NE(expected.empty(), s.IsValid());
}

std::string Middle(const std::string& text, int pos, int n) {
    const std::size_t from = (std::max)(pos, 0);
    return from < text.size() ? text.substr(from, (std::max)(n, 0)) : "";
}

std::string Without(std::string text, int pos, int n) {
    const std::size_t from = (std::max)(pos, 0);
    return from < text.size() ? text.erase(from, (std::max)(n, 0)) : text;
}

std::string Inserted(std::string text, const std::string& other, int pos) {
    const std::size_t at = text.empty() ? 0 : (std::max)(pos, 0);
    return at <= text.size() ? text.insert(at, other) : text;
}

std::string Replaced(std::string text, const std::string& old, const std::string& other) {
    for (std::size_t at = 0; !old.empty() && (at = text.find(old, at)) != std::string::npos;) {
        text.replace(at, old.size(), other);
        at += other.size();
    }
    return text;
}

int Sign(int order) { return (order > 0) - (order < 0); }

void Compare(const std::string& text, const std::string& old, const std::string& other, int pos,
             int n, bool null) {
    const S s(text.c_str());
    const char* const o = null && old.empty() ? nullptr : old.c_str();
    const char* const r = null && other.empty() ? nullptr : other.c_str();
    const std::string only_old = old.empty() ? "#" : old;
    Expect(Middle(text, pos, n), s.Mid(pos, n));
    Expect(Middle(text, 0, n), s.Left(n));
    const int size = static_cast<int>(text.size());
    Expect(n < size ? Middle(text, size - (std::max)(n, 0), n) : text, s.Right(n));
    Expect(text.substr(0, text.find_first_of(old)), s.SpanExcluding(o));
    Expect(text + old, s + o);
    Expect(text + old, S(s) += S(old.c_str()));
    Expect(text + only_old[0], S(s) += only_old[0]);
    Expect(Without(text, pos, n), S(text.c_str()).Delete(pos, n));
    Expect(Inserted(text, old, pos), S(text.c_str()).Insert(o, pos));
    Expect(Inserted(text, old, pos), S(text.c_str()).InsertRow(o, pos));
    Expect(Replaced(text, old, other), S(text.c_str()).Replace(o, r));
    Expect(Replaced(text, only_old.substr(0, 1), "!"), S(text.c_str()).Replace(only_old[0], '!'));
    const std::size_t found = old.empty() ? std::string::npos : text.find(old);
    const std::string removed =
        found == std::string::npos ? text : std::string(text).erase(found, old.size());
    Expect(removed, S(text.c_str()).RemoveSubstring(o));
    std::string rest = text;
    std::erase_if(rest, [&](char c) { return old.find(c) != std::string::npos; });
    Expect(rest, S(text.c_str()).Exclude(o));
    Expect(text.substr(0, text.find_last_not_of(old) + 1), S(text.c_str()).TrimRight(o));
    Expect(text.substr((std::min)(text.find_first_not_of(old), text.size())),
           S(text.c_str()).TrimLeft(o));
    const bool searched = o && !text.empty();
    EXPECT_EQ(searched ? static_cast<int>(text.find(old)) : -1, s.Find(o));
    EXPECT_EQ(static_cast<int>(text.find(only_old[0])), s.Find(only_old[0]));
    EXPECT_EQ(static_cast<int>(text.rfind(only_old[0])), s.ReverseFind(only_old[0]));
    if (text.empty() || old.empty()) return;
    const int order = Sign(text.compare(old));  // by unsigned bytes
    EXPECT_EQ(order, s.Compare(o));
    EXPECT_EQ(order == 0, s == S(o));
    EXPECT_EQ(order < 0, s < S(o));
    EXPECT_EQ(order > 0, s > S(o));
}

TEST(StringModel, DoesWhatAStandardStringDoes) {
    std::mt19937 random(20240611);
    const auto random_text = [&](std::size_t longest) {
        std::string text(random() % (longest + 1), ' ');
        for (char& c : text) c = "aA\xE0"[random() % 3];
        return text;
    };
    const int places[] = {INT_MIN, -1, 0, 1, 2, 3, 5, 8, INT_MAX};
    for (int round = 0; round < 20000 && !testing::Test::HasFailure(); ++round) {
        const std::string text = random_text(round % 9 ? 8 : 40), old = random_text(3),
                          other = random_text(4);
        const int pos = places[random() % 9], n = places[random() % 9];
        SCOPED_TRACE(testing::Message()
                     << text << ", " << old << ", " << other << " at " << pos << ", " << n);
        Compare(text, old, other, pos, n, random() % 2 != 0);
        Compare(text, text.substr(0, text.size() - text.size() / 2) + old, other, pos, n, false);
    }
}

}  // namespace
