// Who wants to see the frames on the line as they go and come: a trace, a test.
#pragma once

#include <cstdint>
#include <span>

namespace qrv {

/// What a reply was worth. Silent: the time was up and no byte had come.
enum class Verdict { Good, BadChecksum, Silent };

class LinkObserver {
 public:
    virtual ~LinkObserver() = default;

    /// @param attempt  1 for the first send of a frame, 2 for the first repeat
    virtual void sent(std::span<const std::uint8_t> frame, int attempt) = 0;
    virtual void received(std::span<const std::uint8_t> reply, Verdict verdict) = 0;
    /// Filler went out after a bad reply.
    virtual void resynchronised(std::span<const std::uint8_t> filler) = 0;
};

}  // namespace qrv
