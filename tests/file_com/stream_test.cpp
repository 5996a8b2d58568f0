#include "file_com/stream.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "support/guarded_buffer.h"
#include "support/temp_folder.h"

namespace {

// What a component does that is handed a stream and knows nothing more.
void Send(CQELOStream& out, const std::string& text) {
    std::string bytes = text;
    out.Write(bytes.data(), static_cast<int>(bytes.size()));
}
std::string Receive(CQELIStream& in, int n) {
    std::string bytes(static_cast<std::size_t>(n), '.');
    in.Read(bytes.data(), n);
    return bytes;
}

TEST(MemStream, ReadingAndWritingMoveOneCursorOfEachCopy) {
    GuardedBuffer memory("0123456789");
    CQELMemStream first(memory.data());
    Send(first, "abcd");
    EXPECT_EQ("45", Receive(first, 2));
    CQELMemStream second(first);
    EXPECT_EQ("67", Receive(first, 2));
    EXPECT_EQ("678", Receive(second, 3));
    first = second;
    Send(first, "X");
    EXPECT_STREQ("abcd45678X", memory.text());
}

TEST(MemStream, TransfersNothingWithoutCountCursorOrBuffer) {
    char memory[] = "0123";
    char byte = 'x';
    CQELMemStream stream(memory), none;
    for (const int n : {0, -1, -2147483647 - 1}) {
        stream.Read(&byte, n);
        stream.Write(&byte, n);
    }
    stream.Read(nullptr, 2);
    stream.Write(nullptr, 2);
    EXPECT_EQ('x', byte);
    EXPECT_EQ("0123", Receive(stream, 4));
    EXPECT_EQ("..", Receive(none, 2));
    Send(none, "ab");
}

TEST(FileStream, SharesTheFileThatItWasMadeOf) {
    const TempFolder folder;
    CQELFile file((folder / "file").c_str(), "w+b", true);
    auto stream = std::make_unique<CQELFileStream>(file);
    Send(*stream, "hello");
    EXPECT_EQ(5u, file.CurPos());
    file.Seek(1, SEEK_SET);
    EXPECT_EQ("ell", Receive(*stream, 3));
    CQELFileStream copy(*stream);
    EXPECT_EQ("o..", Receive(copy, 3)) << "the end of the file is no failure";
    char byte = 'x';
    stream->Write(&byte, -1);
    stream->Read(&byte, -1);
    EXPECT_EQ(5u, file.CurPos());
    file.Seek(0, SEEK_END);
    Send(*stream, "!");
    copy = CQELFileStream();
    file.Close();
    EXPECT_EQ("hello", folder.Read("file")) << "the stream still has it open";
    std::unique_ptr<CQELStream>(std::move(stream)).reset();  // through its base
    EXPECT_EQ("hello!", folder.Read("file"));
}

TEST(FileStream, ThrowsWhenItsFileRaises) {
    const TempFolder folder;
    const std::string path = folder.Write("file", "abc");
    CQELFileStream raising(CQELFile(path.c_str(), "rb", true)), none;
    CQELFileStream recording(CQELFile(path.c_str(), "rb", false));
    EXPECT_THROW(Send(raising, "x"), XQELFile);
    EXPECT_NO_THROW(Send(recording, "x"));
    EXPECT_NO_THROW(Send(none, "x"));
    EXPECT_EQ("..", Receive(none, 2));
}

}  // namespace
