#pragma once

// The guides of `vantel new --guide`: one short expression per guide,
//   RATIO [color=C] [fill=C] [weight=W] [grid=RxC | grid-px=N] [clear|noclear] [in=N]
// where RATIO is W:H (also with the ratio sign, W∶H) or a single number
// meaning N:1. `in=N` nests the guide inside the N-th guide given, counted
// from 1, which must come earlier, so every list of expressions is a tree.

#include <OverlayGenerator/AspectRatio.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace vantel::cli {

struct GuideExpression {
    AspectRatio guide;
    std::size_t parent = 0;  // 1-based position of the enclosing guide; 0 at the top level
};

// `earlierGuides` is how many guides came before, the range of in=N. Bad
// text throws CLI::ValidationError "--guide 'TEXT': what is wrong"; a guide
// without color= takes a colour of the preset palette.
GuideExpression parseGuideExpression(const std::string& text, std::size_t earlierGuides);

// The top-level guides, each holding the guides nested in it in the order
// they were given.
std::vector<AspectRatio> nestedGuides(const std::vector<GuideExpression>& expressions);

}  // namespace vantel::cli
