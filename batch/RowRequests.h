#pragma once

// The checks a batch row asks for: the cross-section check at the row's point and, when a buckling
// length is given, the member checks, over a section and steel already found.

#include "BatchInput.h"

#include <design/CrossSectionCheck.h>
#include <design/MemberCheck.h>

#include <optional>

namespace batch {

struct RowRequests {
    design::CrossSectionRequest cross;
    std::optional<design::MemberRequest> member;
};

RowRequests rowRequests(const MemberRow& row, SDBSection* section, KaConstrSteel* steel);

} // namespace batch
