// Precompiled for the targets that use the toolkit.
#include <wx/wx.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <memory>
#include <string>
#include <vector>
