#ifndef ZVFOUNDATION_CSIMPLECRYPT_P_H
#define ZVFOUNDATION_CSIMPLECRYPT_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVFoundation API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

#include <cstddef>
#include <cstdint>

namespace ZVFoundationPrivate {
namespace SimpleCryptFormat {

// The binary form is [version][tag, 8 bytes][plain text XOR key stream], the plain text
// being the UTF-16LE code units of the string.
//
// Both SipHash keys pair the user's 64-bit key with a fixed second half, distinct for
// the two uses so that the tag and the key stream never come from the same function.
// Changing any of these values makes every text enciphered so far unreadable.
constexpr unsigned char Version = 0x01;
constexpr std::uint64_t TagKeyHigh = 0x5a5643724d414331ULL;
constexpr std::uint64_t StreamKeyHigh = 0x5a564372454e4331ULL;

constexpr std::size_t TagSize = 8;
constexpr std::size_t HeaderSize = 1 + TagSize;

} // namespace SimpleCryptFormat
} // namespace ZVFoundationPrivate

#endif // ZVFOUNDATION_CSIMPLECRYPT_P_H
