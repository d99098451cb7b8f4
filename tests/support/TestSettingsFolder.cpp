// Settings of a test program run by hand: ctest gives every run its own
// settings folder (SG_SETTINGS_DIR); a program started directly would read
// and write the user's settings, which other runs share. With the variable
// unset, the program takes a folder of its own in the working folder, as
// the fuzz targets do.
#include <cstdlib>

namespace sgtest {
namespace {

bool chooseSettingsFolder() { return setenv("SG_SETTINGS_DIR", "test-settings-direct", 0) == 0; }

const bool chosen = chooseSettingsFolder();

}  // namespace
}  // namespace sgtest
