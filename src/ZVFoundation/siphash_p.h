#ifndef ZVFOUNDATION_SIPHASH_P_H
#define ZVFOUNDATION_SIPHASH_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVFoundation API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

#include <ZVFoundation/zvfoundation_export.h>

#include <cstddef>
#include <cstdint>

namespace ZVFoundationPrivate {

// SipHash-2-4, the keyed 64-bit pseudo-random function of Aumasson and Bernstein.
// The 128-bit key is (k0, k1): k0 is its first eight bytes read little-endian, k1 the
// last eight. The result is the 64-bit value whose little-endian bytes are the eight
// output bytes of the reference definition. Plain C++ without Qt so that it can run
// anywhere, and free of allocation.
ZVFOUNDATION_AUTOTEST_EXPORT std::uint64_t sipHash24(std::uint64_t k0, std::uint64_t k1,
                                                     const void* data, std::size_t size) noexcept;

} // namespace ZVFoundationPrivate

#endif // ZVFOUNDATION_SIPHASH_P_H
