#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

namespace kit {

// The room in which the formatting engines work: some hundred characters in the object itself, on
// the stack, and a block of the heap for more. Memory that cannot be had is thrown as
// (char*)"MemoryError", the type that callers of the string class catch.
class WorkText {
public:
    WorkText() = default;
    explicit WorkText(std::string_view text) { Append(text); }

    // Makes room for `size` characters in all, the terminator included, keeps the text and returns
    // where it starts. The address is good until the room grows again.
    char* Reserve(std::size_t size) {
        if (size > room_) Grow(size);
        return data();
    }
    void Append(std::string_view text) {
        if (!text.empty()) std::memcpy(Extend(text.size()), text.data(), text.size());
    }
    void Append(std::size_t count, char fill) { std::memset(Extend(count), fill, count); }

    // Makes the text `count` characters longer and returns where they are to be written.
    char* Extend(std::size_t count) {
        char* const end = Reserve(length_ + count) + length_;
        length_ += count;
        return end;
    }
    void DropLast(std::size_t count) { length_ -= count; }

    std::string_view text() const { return {data(), length_}; }
    char* c_str() {
        Reserve(length_ + 1)[length_] = '\0';
        return data();
    }

private:
    static constexpr std::size_t kLocalRoom = 512;

    struct Free {
        void operator()(char* block) const { std::free(block); }
    };

    char* data() { return heap_ ? heap_.get() : local_; }
    const char* data() const { return heap_ ? heap_.get() : local_; }

    void Grow(std::size_t size) {
        const std::size_t room = size > room_ * 2 ? size : room_ * 2;
        char* const block = static_cast<char*>(std::malloc(room));
        if (!block) throw const_cast<char*>("MemoryError");
        std::memcpy(block, data(), length_);
        heap_.reset(block);
        room_ = room;
    }

    char local_[kLocalRoom];
    std::unique_ptr<char, Free> heap_;
    std::size_t room_ = kLocalRoom;
    std::size_t length_ = 0;
};

}  // namespace kit
