#include "Session.h"

#include "platform/RunTimeError.h"
#include "store/LifeCycle.h"

namespace qrv {

Session::Session(Terminal& terminal) : platform_(terminal), bench_(platform_.services(), findProgramPlaces()) {
    try {
        bench_.db.open_database(bench_.places.catalogue);
    } catch (const RunTimeError& error) {
        throw CommandFailure(ExitCode::File, "The function catalogue can't be used: " + error.description());
    }
}

Session::~Session() {
    // Nothing is lost by a work copy that could not be deleted.
    if (isOpen_) ignoringErrors([this] { close(Answer::No); });
}

void Session::open(const std::string& path) {
    OpenConfiguration(bench_, path);
    isOpen_ = true;
}

void Session::close(Answer answer) {
    isOpen_ = false;
    CloseConfiguration(bench_, answer);
}

ConfigurationContent Session::contentOf(const std::string& path) {
    open(path);
    // An upgraded file stays locked until its cursors are closed.
    bench_.db.close_work_dbs();
    ConfigurationContent content = contentOfWorkFile(bench_.WorkFileName);
    close(Answer::No);
    return content;
}

}  // namespace qrv
