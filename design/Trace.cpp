#include "Trace.h"

namespace design {

const char* toString(TraceStatus status)
{
    switch (status) {
    case TraceStatus::Value: return "value";
    case TraceStatus::Fulfilled: return "fulfilled";
    case TraceStatus::NotFulfilled: return "not fulfilled";
    case TraceStatus::NotVerified: return "not verified";
    }
    return "";
}

std::vector<TraceLine> traceCrossSection(const CrossSectionRequest&, const CrossSectionOutcome&) { return {}; }

std::vector<TraceLine> traceMember(const MemberRequest&, const MemberOutcome&) { return {}; }

} // namespace design
