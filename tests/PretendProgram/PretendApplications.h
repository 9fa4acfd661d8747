#pragma once

#include "Fakes/PretendMachine.h"

namespace Quillmere {

/// Installs applications of every kind on @p machine, with what they leave in the home.
void fillPretendApplications(PretendMachine &machine);

} // namespace Quillmere
