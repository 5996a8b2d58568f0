#include <gtest/gtest.h>

#include "report/table_builder_c.h"
#include "support/guarded_buffer.h"

namespace {

TEST(HtmlEscape, TellsItsRoomAndWritesOnlyWhatFits) {
    const struct {
        const char *text, *html;
        unsigned long room;
    } cases[] = {
        {"plain", "plain", 6},
        {"a<b && \"c\">'d'", "a&lt;b &amp;&amp; &quot;c&quot;&gt;&#39;d&#39;", 47},
        {"\xC0&\xFF", "\xC0&amp;\xFF", 8},  // bytes of the code page stay
        {"", "", 1},
        {nullptr, "", 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.html);
        EXPECT_EQ(c.room, QEL_HtmlEscape(c.text, nullptr, 0));
        GuardedBuffer exact(c.room);
        EXPECT_EQ(c.room, QEL_HtmlEscape(c.text, exact.text(), c.room));
        EXPECT_STREQ(c.html, exact.text());
        char untouched = '#';
        EXPECT_EQ(c.room, QEL_HtmlEscape(c.text, &untouched, c.room - 1));
        EXPECT_EQ('#', untouched);
    }
}

}  // namespace
