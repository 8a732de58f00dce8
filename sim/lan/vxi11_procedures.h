// SPDX-License-Identifier: MIT
#pragma once

#include "rpc/message.h"

namespace sim::lan {

class vxi11_service_t;

/// Executes the procedure that a call to the core or abort program names.
rpc::accept_status_t run_procedure(vxi11_service_t &service, const rpc::call_t &call,
                                   rpc::xdr_writer_t &results);

} // namespace sim::lan
