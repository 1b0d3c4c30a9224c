// A second workstation for the lock tests: opens the dossier's entries through AdsClass, locks
// one record (or the whole table), says so by creating a ready file, and keeps the lock until a
// release file appears (at most 30 seconds).
//
//   fnrk_record_lock_holder DOSSIER_PREFIX record|table RECORD READY_FILE RELEASE_FILE

#include <fstream>
#include <iostream>
#include <memory>
#include <string>

#include "backend/frc_database.hpp"
#include "engine/engine.hpp"
#include "tables/ads_class.hpp"

int main(int argc, char** argv) {
    using namespace fnrk;
    if (argc != 6) {
        std::cerr << "usage: fnrk_record_lock_holder PREFIX record|table RECORD READY RELEASE\n";
        return 64;
    }
    const std::string what = argv[2];
    engine::Engine engine;
    tables::SqlDatabase db(engine, [] { return std::make_unique<backend::FRCDatabase>(); });
    tables::AdsClass ads(db);
    ads.SetInteractive(false);
    ads.SetDossierPrefix(argv[1]);
    if (ads.Initialize() != engine::AE_SUCCESS || ads.FileOpen("ACT") != engine::AE_SUCCESS) {
        std::cerr << "cannot open the entries: " << ads.GetAdsLastError() << "\n";
        return 1;
    }
    const bool locked =
        what == "table" ? ads.LockTable("ACT") : ads.RecLock("ACT", std::stoul(argv[3]));
    if (!locked) {
        std::cerr << "lock refused\n";
        return 2;
    }
    std::ofstream(argv[4]) << "locked\n";
    const bool released = tables::AdsClass::waitFileExist(argv[5], true, 30);
    ads.FlushAndUnlock("ACT");
    return released ? 0 : 3;
}
