#pragma once

// Base of the tests that drive clsUBL: the sample company's look-ups, a temporary folder, and the
// saved document read back.

#include <gtest/gtest.h>

#include "einvoice/cls_ubl.hpp"
#include "einvoice/sample_sales_document.hpp"
#include "support/temp_dir.hpp"
#include "xml_probe.hpp"

namespace fnrk::einvoice {

class WriterTest : public ::testing::Test {
  protected:
    FixedInvoiceLookups lookups = SampleLookups();
    testing::TempDir dir;
    std::filesystem::path file = dir / "out.xml";

    testing::XmlProbe Save(clsUBL& writer) {
        EXPECT_TRUE(writer.SaveFile(file.string()));
        return testing::XmlProbe(file);
    }
};

}  // namespace fnrk::einvoice
