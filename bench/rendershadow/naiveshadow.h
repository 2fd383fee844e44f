// The shadow bitmap computed the obvious way, as a baseline: every window pixel is
// tested against the region, and every bitmap pixel looks at the whole kernel around
// it, instead of sampling each row from its ends and stamping only near the ends.
#ifndef ZVBENCH_NAIVESHADOW_H
#define ZVBENCH_NAIVESHADOW_H

#include <ZVCore/private/RenderShadow>

#include <cstdint>
#include <functional>
#include <vector>

std::vector<std::uint32_t> NaiveShadow(int width, int height, const std::function<bool(int x, int y)>& inside,
                                       const ZVUIFramework::ShadowSettings& settings);

#endif // ZVBENCH_NAIVESHADOW_H
