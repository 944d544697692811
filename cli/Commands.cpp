#include "Commands.h"

#include <array>

namespace cli {

std::span<const Registrar> registrars()
{
    static const std::array<Registrar, 4> all{registerSectionCommand, registerSectionsCommand, registerClassifyCommand, registerCheckCommand};
    return all;
}

} // namespace cli
