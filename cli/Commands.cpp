#include "Commands.h"

#include <array>

namespace cli {

std::span<const Registrar> registrars()
{
    static const std::array<Registrar, 8> all{registerSectionCommand, registerSectionsCommand, registerClassifyCommand,
                                              registerCheckCommand,   registerMemberCommand,   registerMcrCommand,
                                              registerBatchCommand,   registerSelectCommand};
    return all;
}

} // namespace cli
