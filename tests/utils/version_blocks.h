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
    return bytes + Le16(0);
}

// One block. The value length is written as given, whatever the value is.
inline std::string Block(const std::string& key, std::size_t value_length, std::size_t type,
                         const std::string& value, std::initializer_list<std::string> children) {
    std::string body = "123456" + Utf16(key);
    const auto append = [&](const std::string& part) {
        body.resize((body.size() + 3) & ~std::size_t{3});
        body += part;
    };
    append(value);
    for (const auto& child : children) append(child);
    return Le16(body.size()) + Le16(value_length) + Le16(type) + body.substr(6);
}

inline std::string Folder(const std::string& key, std::initializer_list<std::string> children) {
    return Block(key, 0, 1, "", children);
}

inline std::string Text(const std::string& key, const std::string& text) {
    return Block(key, text.size() + 1, 1, Utf16(text), {});
}

// The fixed record: version 1.2.3.4, a DLL for Windows NT, a date; the rest is zero.
inline std::string FixedRecord() {
    std::string record;
    for (const unsigned field : {0xFEEF04BDu, 0x10000u, 0x00010002u, 0x00030004u, 0u, 0u, 0u, 0u,
                                 0x40004u, 2u, 0u, 0x01D5ABCDu, 0x0000BEEFu}) {
        record += Le16(field & 0xFFFF) + Le16(field >> 16);
    }
    return record;
}

// A good resource in Russian, code page 1251.
inline std::string GoodResource(const std::string& fixed = FixedRecord()) {
    const auto texts =
        Folder("041904E3", {Text("CompanyName", "Company"), Text("LegalCopyright", "Rights"),
                            Text("ProductName", "Product"), Text("ProductVersion", "5.6"),
                            Text("OriginalFilename", "a.dll"),
                            Text("FileDescription", "What it is"), Text("FileVersion", "one"),
                            Text("InternalName", "a"), Text("Comments", "Remarks")});
    const auto translation = Block("Translation", 4, 0, Le16(0x419) + Le16(1251), {});
    return Block("VS_VERSION_INFO", fixed.size(), 0, fixed,
                 {Folder("StringFileInfo", {texts}), Folder("VarFileInfo", {translation})});
}
