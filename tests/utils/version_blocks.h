#pragma once

// Version resources put together by hand, as resource compilers write them.

#include <initializer_list>
#include <string>

inline std::string Le16(std::size_t value) {
    return {static_cast<char>(value), static_cast<char>(value >> 8)};
}

inline std::string Utf16(const std::string& ascii) {
    std::string bytes;
    for (const char c : ascii) bytes += Le16(static_cast<unsigned char>(c));
    return bytes;
}

inline std::string Padded(std::string bytes) {
    bytes.resize((bytes.size() + 3) & ~std::size_t{3});
    return bytes;
}

// One block. The value length is written as given, whatever the value is.
inline std::string Block(const std::string& key, std::size_t value_length, int type,
                         const std::string& value, std::initializer_list<std::string> children) {
    std::string body = Padded("123456" + Utf16(key) + Le16(0)) + value;
    for (const auto& child : children) body = Padded(body) + child;
    return Le16(body.size()) + Le16(value_length) + Le16(static_cast<std::size_t>(type)) +
           body.substr(6);
}

inline std::string Folder(const std::string& key, std::initializer_list<std::string> children) {
    return Block(key, 0, 1, "", children);
}

inline std::string TextBlock(const std::string& key, const std::string& text) {
    return Block(key, text.size() + 1, 1, Utf16(text) + Le16(0), {});
}

// The fixed record: version 1.2.3.4, a DLL for Windows NT, a date; the rest is zero.
inline std::string FixedRecord() {
    const auto le32 = [](unsigned value) { return Le16(value & 0xFFFF) + Le16(value >> 16); };
    std::string record;
    for (const unsigned field : {0xFEEF04BDu, 0x10000u, 0x00010002u, 0x00030004u, 0u, 0u, 0u, 0u,
                                 0x40004u, 2u, 0u, 0x01D5ABCDu, 0x0000BEEFu}) {
        record += le32(field);
    }
    return record;
}

// A good resource in Russian, code page 1251.
inline std::string GoodResource(const std::string& fixed = FixedRecord()) {
    return Block(
        "VS_VERSION_INFO", fixed.size(), 0, fixed,
        {Folder(
             "StringFileInfo",
             {Folder("041904E3",
                     {TextBlock("CompanyName", "Company"), TextBlock("LegalCopyright", "Rights"),
                      TextBlock("ProductName", "Product"), TextBlock("ProductVersion", "5.6"),
                      TextBlock("OriginalFilename", "a.dll"),
                      TextBlock("FileDescription", "What it is"), TextBlock("FileVersion", "one"),
                      TextBlock("InternalName", "a"), TextBlock("Comments", "Remarks")})}),
         Folder("VarFileInfo", {Block("Translation", 4, 0, Le16(0x419) + Le16(1251), {})})});
}
