// A second workstation for the log-on tests: logs a user on (the users folder is the
// installation of FNRK_MAIN_PATH), says so by creating a ready file, and stays logged on until
// a release file appears (at most 30 seconds) or it is killed. It ends without logging off, as
// a workstation that is switched off does.
//
//   fnrk_logon_holder NAME READY_FILE RELEASE_FILE

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>

#include "backend/frc_database.hpp"
#include "engine/engine.hpp"
#include "tables/ads_class.hpp"
#include "users/user.hpp"

int main(int argc, char** argv) {
    using namespace fnrk;
    if (argc != 4) {
        std::cerr << "usage: fnrk_logon_holder NAME READY RELEASE\n";
        return 64;
    }
    engine::Engine engine;
    tables::SqlDatabase db(engine, [] { return std::make_unique<backend::FRCDatabase>(); });
    tables::AdsClass ads(db);
    ads.SetInteractive(false);
    if (ads.Initialize() != engine::AE_SUCCESS) return 1;
    users::user person(ads);
    if (!person.CheckAccess(argv[1])) {
        std::cerr << "log-on refused\n";
        return 2;
    }
    std::ofstream(argv[2]) << "logged on\n";
    const bool released = tables::AdsClass::waitFileExist(argv[3], true, 30);
    // Switched off: no log-off, the process just ends.
    std::_Exit(released ? 0 : 3);
}
