// The rows that a block owns: made from the catalogue when a function is placed, and taken away again. Used by the
// assignment view, by the boards and by the upload.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace qrv {

struct Workbench;

/// Not a NOP. Leaves the catalogue's functions in number order ("FN").
[[nodiscard]] bool BlockIsUsed(Workbench& bench, std::int16_t block);

/// Whether the texts of string parameters are made as well.
enum class StringRows { Make, Leave };
/// Whether what the engine refuses ends the routine, or only the statement that met it.
enum class Refusals { Raise, Skip };

/// Adds the constants of the catalogue's current function to the block, each input wired to its default source and each
/// parameter at its default, and makes it the block's function. Deletes nothing: constants that are there stay.
void buildBlock(Workbench& bench, std::int16_t block, StringRows strings, Refusals refusals = Refusals::Raise);

/// Makes the block a NOP without constants and comments.
void clearBlock(Workbench& bench, std::int16_t block);

/// A function as it comes from a controller: the block's constants and strings are replaced by the function's, the
/// strings without new ones. A function or block that isn't there is a notice, no change,
/// and false.
bool assign_block_function(Workbench& bench, std::int16_t block, std::int16_t function);

/// Places the function of that name on the block, after a question where the cell shows a function already.
/// @param cellText  what the block's cell shows; a single blank for a NOP
/// Gives the cell's new text; nothing if the block stays as it was.
[[nodiscard]] std::optional<std::string> placeFunction(Workbench& bench, std::int16_t block,
                                                       const std::string& cellText, const std::string& functionName);

}  // namespace qrv
