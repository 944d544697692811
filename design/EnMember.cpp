#include "EnMember.h"

namespace design {

void evaluateEnMember(const MemberRequest&, const EnCrossSection& cross, double, EnMember& out,
                      std::vector<TraceLine>*)
{
    out = EnMember{};
    out.sectionClass = cross.sectionClass;
}

} // namespace design
