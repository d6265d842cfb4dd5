// The volume window as a viewer opens, feeds and closes it.

#include "factory/zel_viewer.h"
#include "tests/mapping/viewer_fixture.h"
#include "tests/support/failing_memory.h"
#include "tests/support/user.h"
