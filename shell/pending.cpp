// Actions whose subsystems are still to come: the buttons exist and a
// press does nothing yet.
#include "shell/main_window.h"

namespace shell {

void VelmoraMain::Specs_Cbt_Click() {}
void VelmoraMain::SaveLog_Cbt_Click() {}
void VelmoraMain::Drivers_Cbt_Click() {}

}  // namespace shell
