#pragma once
// The program's version; the main window's version label reads it back
// from the version resource.
#define VELMORA_VERSION_MAJOR 1
#define VELMORA_VERSION_MINOR 0
#define VELMORA_VERSION_REVISION 1
#define VELMORA_VERSION_TEXT "1.0.0.1"
#define VELMORA_COMPANY "Velmora graphics check - from the Velmora developers for VORA users"
