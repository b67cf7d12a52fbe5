// The test page's runner: one visual test per button.
#include "shell/main_window.h"

namespace shell {

void VelmoraMain::GLTest_Cbt_Click(int) {}

}  // namespace shell
