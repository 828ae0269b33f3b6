// The machine's services in one bundle: built once in main (or by a test) and passed by reference.
#pragma once

namespace qrv {

class Clock;
class EventPump;
class FileDialog;
class FormHost;
class MessageBox;
class SerialPort;
class Settings;

struct Platform {
    MessageBox& messageBox;
    FileDialog& fileDialog;
    FormHost& formHost;
    Settings& settings;
    Clock& clock;
    EventPump& eventPump;
    SerialPort& serialPort;
};

}  // namespace qrv
