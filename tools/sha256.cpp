// SPDX-License-Identifier: MIT
#include "tools/sha256.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <stdexcept>
#include <vector>

#ifdef _WIN32
#include <windows.h>

#include <bcrypt.h>
#else
#include <sys/types.h>

#include <sha2.h>
#endif

namespace {

constexpr std::uint64_t chunk_bytes = 1 << 16;
using digest_t = std::array<std::uint8_t, 32>;

#ifdef _WIN32

/// A hash of Windows' own.
class hash_t
{
public:
    hash_t()
    {
        BCryptOpenAlgorithmProvider(&provider, BCRYPT_SHA256_ALGORITHM, nullptr, 0);
        BCryptCreateHash(provider, &hash, nullptr, 0, nullptr, 0, 0);
    }
    hash_t(const hash_t &) = delete;
    hash_t &operator=(const hash_t &) = delete;
    ~hash_t()
    {
        BCryptDestroyHash(hash);
        BCryptCloseAlgorithmProvider(provider, 0);
    }

    void add(std::vector<std::uint8_t> &bytes)
    {
        BCryptHashData(hash, bytes.data(), static_cast<ULONG>(bytes.size()), 0);
    }

    digest_t digest()
    {
        digest_t bytes{};
        if (BCryptFinishHash(hash, bytes.data(), static_cast<ULONG>(bytes.size()), 0) < 0)
            throw std::runtime_error("Windows does not work out SHA-256");
        return bytes;
    }

private:
    BCRYPT_ALG_HANDLE provider = nullptr;
    BCRYPT_HASH_HANDLE hash = nullptr;
};

#else

class hash_t
{
public:
    hash_t() { SHA256Init(&context); }

    void add(const std::vector<std::uint8_t> &bytes)
    {
        SHA256Update(&context, bytes.data(), bytes.size());
    }

    digest_t digest()
    {
        digest_t bytes{};
        SHA256Final(bytes.data(), &context);
        return bytes;
    }

private:
    SHA2_CTX context{};
};

#endif

std::string hexadecimal(const digest_t &bytes)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
    }
    return text;
}

} // namespace

std::string sha256_of(const std::filesystem::path &file, std::uint64_t offset, std::uint64_t length)
{
    std::ifstream stream(file, std::ios::binary);
    stream.seekg(static_cast<std::streamoff>(offset));
    hash_t hash;
    std::vector<std::uint8_t> chunk;
    for (; length > 0 && stream; length -= chunk.size()) {
        chunk.resize(static_cast<std::size_t>(std::min(length, chunk_bytes)));
        stream.read(reinterpret_cast<char *>(chunk.data()),
                    static_cast<std::streamsize>(chunk.size()));
        hash.add(chunk);
    }
    return stream ? hexadecimal(hash.digest()) : std::string();
}
