// SPDX-License-Identifier: MIT
#include "sim/visa/visa_exports.h"

#include "sim/visa/visa_resources.h"
#include "sim/visa/visa_transfer.h"

#include <new>

namespace {

// No exception leaves the library.
template <typename call_t>
ViStatus guarded(call_t call) noexcept
{
    try {
        return call();
    } catch (const std::bad_alloc &) {
        return sim::visa::error_allocation;
    } catch (...) {
        return sim::visa::error_system;
    }
}

} // namespace

ViStatus CORVANE_SIM_VISA_CALL viOpenDefaultRM(ViSession *vi)
{
    return guarded([=] { return sim::visa::open_default_manager(vi); });
}

ViStatus CORVANE_SIM_VISA_CALL viSetAttribute(ViObject vi, ViAttr attrName, ViAttrState attrValue)
{
    return guarded([=] { return sim::visa::set_object_attribute(vi, attrName, attrValue); });
}

ViStatus CORVANE_SIM_VISA_CALL viGetAttribute(ViObject vi, ViAttr attrName, void *attrValue)
{
    return guarded([=] { return sim::visa::get_object_attribute(vi, attrName, attrValue); });
}

ViStatus CORVANE_SIM_VISA_CALL viClose(ViObject vi)
{
    return guarded([=] { return sim::visa::close_object(vi); });
}

ViStatus CORVANE_SIM_VISA_CALL viFindRsrc(ViSession sesn, const char *expr, ViFindList *findList,
                                          ViUInt32 *retCnt, char *desc)
{
    return guarded([=] { return sim::visa::find_resources(sesn, expr, findList, retCnt, desc); });
}

ViStatus CORVANE_SIM_VISA_CALL viFindNext(ViFindList findList, char *desc)
{
    return guarded([=] { return sim::visa::find_next(findList, desc); });
}

ViStatus CORVANE_SIM_VISA_CALL viOpen(ViSession sesn, const char *rsrcName, ViAccessMode accessMode,
                                      ViUInt32 /*openTimeout*/, ViSession *vi)
{
    return guarded([=] { return sim::visa::open_session(sesn, rsrcName, accessMode, vi); });
}

ViStatus CORVANE_SIM_VISA_CALL viClear(ViSession vi)
{
    return guarded([=] { return sim::visa::clear_session(vi); });
}

ViStatus CORVANE_SIM_VISA_CALL viWrite(ViSession vi, const ViUInt8 *buf, ViUInt32 cnt,
                                       ViUInt32 *retCnt)
{
    return guarded([=] { return sim::visa::write_bytes(vi, buf, cnt, retCnt); });
}

ViStatus CORVANE_SIM_VISA_CALL viRead(ViSession vi, ViUInt8 *buf, ViUInt32 cnt, ViUInt32 *retCnt)
{
    return guarded([=] { return sim::visa::read_bytes(vi, buf, cnt, retCnt); });
}
