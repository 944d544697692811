#include "Commands.h"

#include <array>

namespace cli {

std::span<const Registrar> registrars()
{
    static const std::array<Registrar, 9> all{registerSectionCommand, registerSectionsCommand, registerClassifyCommand,
                                              registerCheckCommand,   registerMemberCommand,   registerMcrCommand,
                                              registerBatchCommand,   registerReportCommand,   registerSelectCommand};
    return all;
}

} // namespace cli
