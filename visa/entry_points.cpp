// SPDX-License-Identifier: MIT
#include "visa/entry_points.h"

#include "visa/operations.h"

#include <new>

namespace {

// No exception leaves the library.
template <typename call_t>
ViStatus guarded(call_t call) noexcept
{
    try {
        return call();
    } catch (const std::bad_alloc &) {
        return visa::error_allocation;
    } catch (...) {
        return visa::error_system;
    }
}

} // namespace

ViStatus CORVANE_VISA_CALL viOpenDefaultRM(ViSession *vi)
{
    return guarded([=] { return visa::operations::open_default_manager(vi); });
}

ViStatus CORVANE_VISA_CALL viSetAttribute(ViObject vi, ViAttr attrName, ViAttrState attrValue)
{
    return guarded([=] { return visa::operations::set_object_attribute(vi, attrName, attrValue); });
}

ViStatus CORVANE_VISA_CALL viGetAttribute(ViObject vi, ViAttr attrName, void *attrValue)
{
    return guarded([=] { return visa::operations::get_object_attribute(vi, attrName, attrValue); });
}

ViStatus CORVANE_VISA_CALL viClose(ViObject vi)
{
    return guarded([=] { return visa::operations::close_object(vi); });
}

ViStatus CORVANE_VISA_CALL viFindRsrc(ViSession sesn, const char *expr, ViFindList *findList,
                                      ViUInt32 *retCnt, char *desc)
{
    return guarded(
        [=] { return visa::operations::find_resources(sesn, expr, findList, retCnt, desc); });
}

ViStatus CORVANE_VISA_CALL viFindNext(ViFindList findList, char *desc)
{
    return guarded([=] { return visa::operations::find_next(findList, desc); });
}

ViStatus CORVANE_VISA_CALL viOpen(ViSession sesn, const char *rsrcName, ViAccessMode accessMode,
                                  ViUInt32 openTimeout, ViSession *vi)
{
    return guarded([=] {
        return visa::operations::open_session(sesn, rsrcName, accessMode, openTimeout, vi);
    });
}

ViStatus CORVANE_VISA_CALL viClear(ViSession vi)
{
    return guarded([=] { return visa::operations::clear_session(vi); });
}

ViStatus CORVANE_VISA_CALL viWrite(ViSession vi, const ViUInt8 *buf, ViUInt32 cnt, ViUInt32 *retCnt)
{
    return guarded([=] { return visa::operations::write_bytes(vi, buf, cnt, retCnt); });
}

ViStatus CORVANE_VISA_CALL viRead(ViSession vi, ViUInt8 *buf, ViUInt32 cnt, ViUInt32 *retCnt)
{
    return guarded([=] { return visa::operations::read_bytes(vi, buf, cnt, retCnt); });
}

ViStatus CORVANE_VISA_CALL viParseRsrc(ViSession rmSesn, const char *rsrcName, ViUInt16 *intfType,
                                       ViUInt16 *intfNum)
{
    return guarded([=] {
        return visa::operations::parse_resource(rmSesn, rsrcName, intfType, intfNum, nullptr,
                                                nullptr, nullptr);
    });
}

ViStatus CORVANE_VISA_CALL viParseRsrcEx(ViSession rmSesn, const char *rsrcName, ViUInt16 *intfType,
                                         ViUInt16 *intfNum, char *rsrcClass,
                                         char *expandedUnaliasedName, char *aliasIfExists)
{
    return guarded([=] {
        return visa::operations::parse_resource(rmSesn, rsrcName, intfType, intfNum, rsrcClass,
                                                expandedUnaliasedName, aliasIfExists);
    });
}

ViStatus CORVANE_VISA_CALL viReadSTB(ViSession vi, ViUInt16 *status)
{
    return guarded([=] { return visa::operations::read_status_byte(vi, status); });
}

ViStatus CORVANE_VISA_CALL viAssertTrigger(ViSession vi, ViUInt16 protocol)
{
    return guarded([=] { return visa::operations::assert_trigger(vi, protocol); });
}

ViStatus CORVANE_VISA_CALL viLock(ViSession vi, ViAccessMode lockType, ViUInt32 timeout,
                                  const char *requestedKey, char *accessKey)
{
    return guarded([=] {
        return visa::operations::lock_session(vi, lockType, timeout, requestedKey, accessKey);
    });
}

ViStatus CORVANE_VISA_CALL viUnlock(ViSession vi)
{
    return guarded([=] { return visa::operations::unlock_session(vi); });
}

ViStatus CORVANE_VISA_CALL viStatusDesc(ViObject vi, ViStatus status, char *desc)
{
    return guarded([=] { return visa::operations::describe_status(vi, status, desc); });
}

ViStatus CORVANE_VISA_CALL viFlush(ViSession vi, ViUInt16 mask)
{
    return guarded([=] { return visa::operations::flush_buffers(vi, mask); });
}

ViStatus CORVANE_VISA_CALL viSetBuf(ViSession vi, ViUInt16 mask, ViUInt32 size)
{
    return guarded([=] { return visa::operations::set_buffer_size(vi, mask, size); });
}

ViStatus CORVANE_VISA_CALL viEnableEvent(ViSession vi, ViEventType eventType, ViUInt16 mechanism,
                                         ViUInt32 context)
{
    return guarded(
        [=] { return visa::operations::enable_event(vi, eventType, mechanism, context); });
}

ViStatus CORVANE_VISA_CALL viDisableEvent(ViSession vi, ViEventType eventType, ViUInt16 mechanism)
{
    return guarded([=] { return visa::operations::disable_event(vi, eventType, mechanism); });
}

ViStatus CORVANE_VISA_CALL viDiscardEvents(ViSession vi, ViEventType eventType, ViUInt16 mechanism)
{
    return guarded([=] { return visa::operations::discard_events(vi, eventType, mechanism); });
}

ViStatus CORVANE_VISA_CALL viWaitOnEvent(ViSession vi, ViEventType inEventType, ViUInt32 timeout,
                                         ViEventType *outEventType, ViEvent *outContext)
{
    return guarded([=] {
        return visa::operations::wait_on_event(vi, inEventType, timeout, outEventType, outContext);
    });
}

ViStatus CORVANE_VISA_CALL viInstallHandler(ViSession vi, ViEventType eventType, ViHndlr handler,
                                            ViAddr userHandle)
{
    return guarded(
        [=] { return visa::operations::install_handler(vi, eventType, handler, userHandle); });
}

ViStatus CORVANE_VISA_CALL viUninstallHandler(ViSession vi, ViEventType eventType, ViHndlr handler,
                                              ViAddr userHandle)
{
    return guarded(
        [=] { return visa::operations::uninstall_handler(vi, eventType, handler, userHandle); });
}
