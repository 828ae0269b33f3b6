// A small function catalogue for the tests of the block program: every kind of input, parameter and auxiliary output,
// and the odd ones that the shipped catalogue never holds.
#pragma once

#include <string>

namespace qrv {

/// Makes QRVDATA.DAT in the folder. @param without  names of functions to leave out, separated by commas
void makeTestCatalogue(const std::string& folder, const std::string& without = "");

}  // namespace qrv
