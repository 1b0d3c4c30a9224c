// A second workstation for the concurrent mapping test: maps codes in a company's MSODA table
// through the intake classes, as a user who answers Retry to every lock conflict would.
//
//   fnrk_mapping_writer DOSSIER_PREFIX SHARED_COUNT OWN_COUNT ROUNDS TAG
//
// Each round maps the shared codes S0.. to TAG + round and the codes TAG0.. to TAG. Exit status
// 0 when every update succeeded.

#include <iostream>
#include <memory>
#include <string>

#include "backend/frc_database.hpp"
#include "company/soc_param_col_class_api.hpp"
#include "engine/engine.hpp"
#include "intake/company_facts.hpp"
#include "intake/retrying_sink.hpp"
#include "intake/soda_mappings.hpp"
#include "tables/ads_class.hpp"

int main(int argc, char** argv) {
    using namespace fnrk;
    if (argc != 6) {
        std::cerr << "usage: fnrk_mapping_writer PREFIX SHARED_COUNT OWN_COUNT ROUNDS TAG\n";
        return 64;
    }
    intake::testing::RetryingSink sink;
    platform::SetMessageSink(&sink);
    engine::Engine engine;
    tables::SqlDatabase db(engine, [] { return std::make_unique<backend::FRCDatabase>(); });
    tables::AdsClass ads(db);
    ads.SetDossierPrefix(argv[1]);
    if (ads.Initialize() != engine::AE_SUCCESS) {
        std::cerr << "cannot connect: " << ads.GetAdsLastError() << "\n";
        return 1;
    }
    company::SocParamColClassApi params(ads);
    intake::CompanyFacts company(ads, params);
    intake::SodaMappings mappings(company);
    const int shared = std::stoi(argv[2]);
    const int own = std::stoi(argv[3]);
    const int rounds = std::stoi(argv[4]);
    const std::string tag = argv[5];
    int failures = 0;
    for (int round = 0; round < rounds; ++round) {
        for (int code = 0; code < shared; ++code) {
            failures +=
                mappings.UpdateMapping("S" + std::to_string(code), tag + std::to_string(round)) ? 0
                                                                                                : 1;
        }
        for (int code = 0; code < own; ++code) {
            failures += mappings.UpdateMapping(tag + std::to_string(code), tag) ? 0 : 1;
        }
    }
    if (failures != 0) std::cerr << failures << " updates failed\n";
    return failures == 0 ? 0 : 1;
}
