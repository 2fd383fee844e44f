#include "siphash_p.h"

namespace ZVFoundationPrivate {

namespace {

inline std::uint64_t rotl(std::uint64_t x, unsigned b) noexcept
{
    return (x << b) | (x >> (64 - b));
}

// Assembled byte by byte so that the result does not depend on the host byte order
// or on the alignment of the input.
inline std::uint64_t loadLe64(const unsigned char* p) noexcept
{
    std::uint64_t v = 0;
    for (int i = 7; i >= 0; --i)
        v = (v << 8) | p[i];
    return v;
}

struct SipState
{
    std::uint64_t v0, v1, v2, v3;

    void round() noexcept
    {
        v0 += v1; v1 = rotl(v1, 13); v1 ^= v0; v0 = rotl(v0, 32);
        v2 += v3; v3 = rotl(v3, 16); v3 ^= v2;
        v0 += v3; v3 = rotl(v3, 21); v3 ^= v0;
        v2 += v1; v1 = rotl(v1, 17); v1 ^= v2; v2 = rotl(v2, 32);
    }

    void compress(std::uint64_t m) noexcept
    {
        v3 ^= m;
        round();
        round();
        v0 ^= m;
    }
};

} // namespace

std::uint64_t sipHash24(std::uint64_t k0, std::uint64_t k1, const void* data, std::size_t size) noexcept
{
    SipState s{k0 ^ 0x736f6d6570736575ULL, k1 ^ 0x646f72616e646f6dULL,
               k0 ^ 0x6c7967656e657261ULL, k1 ^ 0x7465646279746573ULL};

    const auto* p = static_cast<const unsigned char*>(data);
    const std::size_t whole = size - size % 8;
    for (std::size_t i = 0; i < whole; i += 8)
        s.compress(loadLe64(p + i));

    // The last block holds the remaining bytes and, in its top byte, the message
    // length modulo 256.
    std::uint64_t last = std::uint64_t(size & 0xff) << 56;
    for (std::size_t i = whole; i < size; ++i)
        last |= std::uint64_t(p[i]) << (8 * (i - whole));
    s.compress(last);

    s.v2 ^= 0xff;
    s.round();
    s.round();
    s.round();
    s.round();
    return s.v0 ^ s.v1 ^ s.v2 ^ s.v3;
}

} // namespace ZVFoundationPrivate
