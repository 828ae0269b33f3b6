// The far end of a serial line that exists only in the machine: what another program opens as its serial port is
// answered from here. Used by the simulated controller's program and by tests of the port.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace qrv {

class PseudoTerminal {
 public:
    /// Makes one, its line settings raw. Raises RunTimeError where the system gives none.
    PseudoTerminal();
    ~PseudoTerminal() { hangUp(); }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    /// The device that the other program opens.
    [[nodiscard]] const std::string& path() const { return path_; }
    /// Readable when bytes wait; -1 after hangUp().
    [[nodiscard]] int descriptor() const { return master_; }
    /// Readable when users of the device came or went: heedUsers() is due. -1 where the system can't tell.
    [[nodiscard]] int usersDescriptor() const { return watch_; }
    /// Takes note of users that came or went. When the last has gone the device is as new: raw, nobody's own, empty.
    void heedUsers();

    /// All bytes that wait; never blocks.
    [[nodiscard]] std::vector<std::uint8_t> readAll();
    /// Bytes that nobody is there to take are lost, as on a wire.
    void write(std::span<const std::uint8_t> bytes);
    /// The line goes away: the other program sees its device vanish.
    void hangUp();

 private:
    struct Signs {
        bool hasCome = false;
        bool hasGone = false;
    };

    [[nodiscard]] Signs takeSigns() const;
    void lookForUsers();
    [[nodiscard]] bool isDeserted();
    void makeAsNew() const;
    void watch();
    void unwatch();

    std::string path_;
    int master_ = -1;
    /// The device, held open by us too: an unattended one reads as an error that comes back at once and for ever.
    int ownEnd_ = -1;
    int watch_ = -1;
    int watched_ = -1;
    bool hasUser_ = false;
};

}  // namespace qrv
