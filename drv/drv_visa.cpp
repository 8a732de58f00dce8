// SPDX-License-Identifier: MIT
#include "drv/drv_visa.h"

#include "drv/pause.h"
#include "drv/visa_library.h"

#include <QLoggingCategory>

#include <algorithm>

namespace {

constexpr const char *usb_expression = "USB?*INSTR";

/// Quiet, unless the user asks through Qt's own rules: QT_LOGGING_RULES="corvane.visa.debug=true".
Q_LOGGING_CATEGORY(visa_log, "corvane.visa", QtWarningMsg)

/// Not when the library is bound: Qt has no rules before main.
void log_search(const visa_library_t &library)
{
    for (const QString &trial : library.search_report())
        qCDebug(visa_log).noquote() << trial;
}

} // namespace

int drv_visa_t::visa_init()
{
    ready = false;
    visa_library_t &library = visa_library_t::instance();
    log_search(library);
    if (!library.load() || !library.can_open_default_rm())
        return visa_result::not_available;
    last_status = library.open_default_rm(&default_rm);
    qCDebug(visa_log, "viOpenDefaultRM: 0x%08X", static_cast<unsigned>(last_status));
    if (last_status < vi_success)
        return visa_result::not_available;
    ready = true;
    return visa_result::done;
}

bool drv_visa_t::visa_is_ready() const noexcept
{
    return ready;
}

ViStatus drv_visa_t::find_usb()
{
    last_status = visa_library_t::instance().find_resource(default_rm, usb_expression, &find_list,
                                                           &find_count, description.data());
    return last_status;
}

ViStatus drv_visa_t::find_next()
{
    return visa_library_t::instance().find_next(find_list, description.data());
}

std::string drv_visa_t::found_resource() const
{
    const auto end = std::find(description.begin(), description.end(), '\0');
    return {description.begin(), end};
}

int drv_visa_t::usb_scan(std::vector<std::string> &list, int &count)
{
    count = 0;
    if (find_usb() != vi_success)
        return visa_result::nothing_found;
    count = static_cast<int>(find_count);
    for (ViUInt32 match = 0; match < find_count; ++match) {
        list.push_back(found_resource());
        find_next();
    }
    return visa_result::done;
}

ViStatus drv_visa_t::session_open(const std::string &resource, ViSession &session)
{
    ViSession opened = 0;
    const ViStatus status = visa_library_t::instance().open(default_rm, resource.c_str(),
                                                            vi_no_lock, open_timeout_ms, &opened);
    if (status >= vi_success)
        session = opened;
    return status;
}

ViStatus drv_visa_t::session_write_status(ViSession session, const char *bytes, std::size_t length)
{
    ViUInt32 written = 0;
    const ViStatus status =
        visa_library_t::instance().write(session, reinterpret_cast<const unsigned char *>(bytes),
                                         static_cast<ViUInt32>(length), &written);
    pause_ms(write_pause_ms);
    return status;
}

bool drv_visa_t::session_write(ViSession session, const char *bytes, std::size_t length)
{
    return session_write_status(session, bytes, length) == vi_success;
}

ViStatus drv_visa_t::session_read_status(ViSession session, char *buffer, std::size_t size)
{
    ViUInt32 count = 0;
    return visa_library_t::instance().read(session, reinterpret_cast<unsigned char *>(buffer),
                                           static_cast<ViUInt32>(size), &count);
}

bool drv_visa_t::session_read(ViSession session, char *buffer, std::size_t size)
{
    return session_read_status(session, buffer, size) == vi_success;
}

ViStatus drv_visa_t::session_close(ViSession session)
{
    return visa_library_t::instance().close(session);
}

bool drv_visa_t::session_close_with_manager(ViSession session)
{
    const ViStatus session_status = session_close(session);
    const ViStatus manager_status = session_close(default_rm);
    // As wide as it takes: the sum of two errors has more than 32 bits.
    return std::int64_t{session_status} + manager_status == vi_success;
}

ViStatus drv_visa_t::session_clear(ViSession session)
{
    return visa_library_t::instance().clear(session);
}

ViStatus drv_visa_t::set_session_timeout(ViSession session, ViUInt32 timeout_ms)
{
    return visa_library_t::instance().set_attribute(session, vi_attr_tmo_value, timeout_ms);
}

ViUInt32 drv_visa_t::session_timeout(ViSession session)
{
    ViUInt32 timeout_ms = 0;
    visa_library_t::instance().get_attribute(session, vi_attr_tmo_value, &timeout_ms);
    return timeout_ms;
}

void drv_visa_t::reopen_default_rm()
{
    visa_library_t::instance().open_default_rm(&default_rm);
}
