// The quad-view redraw test, started from the General page.
#include "shell/main_window.h"

namespace shell {

void VelmoraMain::QuadView_Cbt_Click() {}

}  // namespace shell
