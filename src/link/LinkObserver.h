// Who wants to see the frames on the line as they go and come: a trace, a test.
#pragma once

#include <cstdint>
#include <span>

namespace qrv {

/// What a reply was worth. Silent: the time was up and no byte had come. Overflow: the sum of its bytes can't be held,
/// and the transaction ends with that failure.
enum class Verdict { Good, BadChecksum, Silent, Overflow };

class LinkObserver {
 public:
    virtual ~LinkObserver() = default;

    /// @param attempt  1 for the first send of a frame, 2 for the first repeat
    virtual void sent(std::span<const std::uint8_t> frame, int attempt) = 0;
    /// The last attempt's reply; of no byte where none came.
    virtual void received(std::span<const std::uint8_t> reply, Verdict verdict) = 0;
    /// Bytes that nobody waited for were dropped, at least one.
    virtual void discarded(std::span<const std::uint8_t> bytes) = 0;
    /// Filler went out after a bad reply.
    virtual void resynchronised(std::span<const std::uint8_t> filler) = 0;
};

}  // namespace qrv
