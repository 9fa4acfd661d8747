#pragma once

#include "Fakes/PretendMachine.h"

namespace Quillmere {

/// Fills @p machine with a home full of rubbish, as a person has after some years.
void fillPretendHome(PretendMachine &machine);

} // namespace Quillmere
