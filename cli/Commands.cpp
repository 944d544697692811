#include "Commands.h"

#include <array>

namespace cli {

std::span<const Registrar> registrars()
{
    static const std::array<Registrar, 7> all{registerSectionCommand, registerSectionsCommand, registerClassifyCommand, registerCheckCommand, registerMemberCommand, registerBatchCommand, registerSelectCommand};
    return all;
}

} // namespace cli
