#include "EnCriticalMoment.h"

namespace design {

EnCriticalMoment enCriticalMoment(const MemberRequest&, double, double) { return {}; }

} // namespace design
