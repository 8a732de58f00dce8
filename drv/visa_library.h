// SPDX-License-Identifier: MIT
#pragma once

#include "drv/visa_types.h"

#include <QLibrary>
#include <QStringList>

/// The VISA library of the platform, bound at run time, and its ten entry points.
///
/// The one object is made during static initialisation. Every call may be made whatever was
/// found: an entry point that is missing answers `vi_error_library_nfound`.
class visa_library_t
{
public:
    /// The process-wide binding.
    static visa_library_t &instance();

    visa_library_t(const visa_library_t &) = delete;
    visa_library_t &operator=(const visa_library_t &) = delete;

    /// Loads the library if it is not loaded yet; false when there is none.
    bool load();
    /// True when `viOpenDefaultRM`, without which nothing else works, was found.
    bool can_open_default_rm() const noexcept;

    /// What came of each file that was tried, in order, for whoever looks for the reason.
    const QStringList &search_report() const noexcept { return trials; }

    ViStatus open_default_rm(ViSession *resource_manager) const;
    ViStatus set_attribute(ViSession object, ViAttr attribute, ViAttrState value) const;
    ViStatus get_attribute(ViSession object, ViAttr attribute, void *value) const;
    ViStatus close(ViSession object) const;
    /// `description` holds `vi_find_buflen` bytes, here and in `find_next`.
    ViStatus find_resource(ViSession resource_manager, const char *expression, ViFindList *list,
                           ViUInt32 *count, char *description) const;
    ViStatus find_next(ViFindList list, char *description) const;
    /// `timeout` in milliseconds.
    ViStatus open(ViSession resource_manager, const char *resource, ViAccessMode mode,
                  ViUInt32 timeout, ViSession *session) const;
    ViStatus clear(ViSession session) const;
    ViStatus write(ViSession session, const unsigned char *bytes, ViUInt32 length,
                   ViUInt32 *written) const;
    ViStatus read(ViSession session, unsigned char *buffer, ViUInt32 size, ViUInt32 *count) const;

private:
    struct entry_points_t
    {
        ViStatus(CORVANE_VI_FUNC *open_default_rm)(ViSession *) = nullptr;
        ViStatus(CORVANE_VI_FUNC *set_attribute)(ViSession, ViAttr, ViAttrState) = nullptr;
        ViStatus(CORVANE_VI_FUNC *get_attribute)(ViSession, ViAttr, void *) = nullptr;
        ViStatus(CORVANE_VI_FUNC *close)(ViSession) = nullptr;
        ViStatus(CORVANE_VI_FUNC *find_resource)(ViSession, const char *, ViFindList *, ViUInt32 *,
                                                 char *) = nullptr;
        ViStatus(CORVANE_VI_FUNC *find_next)(ViFindList, char *) = nullptr;
        ViStatus(CORVANE_VI_FUNC *open)(ViSession, const char *, ViAccessMode, ViUInt32,
                                        ViSession *) = nullptr;
        ViStatus(CORVANE_VI_FUNC *clear)(ViSession) = nullptr;
        ViStatus(CORVANE_VI_FUNC *write)(ViSession, const unsigned char *, ViUInt32,
                                         ViUInt32 *) = nullptr;
        ViStatus(CORVANE_VI_FUNC *read)(ViSession, unsigned char *, ViUInt32, ViUInt32 *) = nullptr;
    };

    visa_library_t();
    ~visa_library_t() = default;

    /// False for a file that does not load or lacks entry points.
    bool try_file(const QString &file);
    QStringList bind_entry_points();

    QLibrary library;
    QStringList trials;
    entry_points_t entries;
};
