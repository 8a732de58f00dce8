// SPDX-License-Identifier: MIT
#include "upgrade/package_name.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <iconv.h>
#endif

namespace {

/// A character is at most so many times as long in one encoding as in another.
constexpr std::size_t longest_growth = 3;

#ifdef _WIN32

using encoding_t = UINT;
constexpr encoding_t path_encoding = CP_UTF8;
constexpr encoding_t name_encoding = 936;

/// Empty for bytes that are no text; a character that `to` lacks is replaced without a word.
std::string recode(const std::string &text, encoding_t from, encoding_t to)
{
    std::wstring wide(text.size(), L'\0');
    wide.resize(static_cast<std::size_t>(
        MultiByteToWideChar(from, MB_ERR_INVALID_CHARS, text.data(), static_cast<int>(text.size()),
                            wide.data(), static_cast<int>(wide.size()))));
    std::string recoded(longest_growth * wide.size(), '\0');
    recoded.resize(static_cast<std::size_t>(
        WideCharToMultiByte(to, 0, wide.data(), static_cast<int>(wide.size()), recoded.data(),
                            static_cast<int>(recoded.size()), nullptr, nullptr)));
    return recoded;
}

#else

using encoding_t = const char *;
constexpr encoding_t path_encoding = "UTF-8";
constexpr encoding_t name_encoding = "GBK";

/// Empty when `to` lacks a character.
std::string recode(std::string text, encoding_t from, encoding_t to)
{
    const iconv_t converter = iconv_open(to, from);
    if (converter == reinterpret_cast<iconv_t>(-1))
        return {};
    std::string recoded(longest_growth * text.size(), '\0');
    char *in = text.data();
    char *out = recoded.data();
    std::size_t in_left = text.size();
    std::size_t out_left = recoded.size();
    const bool lossless = iconv(converter, &in, &in_left, &out, &out_left) == 0;
    iconv_close(converter);
    recoded.resize(lossless ? recoded.size() - out_left : 0);
    return recoded;
}

#endif

} // namespace

/// Only the way back shows whether every character has its place in the name.
std::string to_package_name(const std::string &path)
{
    const std::string name = recode(path, path_encoding, name_encoding);
    return to_package_path(name) == path ? name.c_str() : std::string();
}

std::string to_package_path(const std::string &package_name)
{
    return recode(package_name, name_encoding, path_encoding);
}
