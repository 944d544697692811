#include "Commands.h"

#include <array>

namespace cli {

std::span<const Registrar> registrars()
{
    static const std::array<Registrar, 6> all{registerSectionCommand, registerSectionsCommand, registerClassifyCommand, registerCheckCommand, registerMemberCommand, registerBatchCommand};
    return all;
}

} // namespace cli
