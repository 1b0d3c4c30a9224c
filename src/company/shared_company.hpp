#pragma once

// The process's one company-parameter object, over the shared table access: the current
// company's folder, short name, book year and protecting office, and its parameter table. Made
// on first use, kept until the process ends.

#include "company/soc_param_col_class_api.hpp"

namespace fnrk::company {

SocParamColClassApi& SharedSocParamColClassApi();

}  // namespace fnrk::company
