// SPDX-License-Identifier: MIT
#include "drv/visa_library.h"

#include "drv/visa_files.h"

#include <QLatin1String>

#include <algorithm>
#include <type_traits>

namespace {

template <typename entry_t, typename... arguments_t>
ViStatus call(entry_t entry, arguments_t... arguments)
{
    return entry != nullptr ? entry(arguments...) : vi_error_library_nfound;
}

// Made here so that the library is bound before main runs.
const visa_library_t &bound_before_main = visa_library_t::instance();

} // namespace

visa_library_t &visa_library_t::instance()
{
    static visa_library_t binding;
    return binding;
}

visa_library_t::visa_library_t()
{
    const QStringList files = visa_files();
    const auto complete = [this](const QString &file) { return try_file(file); };
    // With none complete, what the standard file has is better than nothing.
    if (std::none_of(files.begin(), files.end(), complete))
        try_file(QLatin1String(standard_visa_file));
}

/// A library that lacks entry points is left loaded: it may have started threads of its own.
bool visa_library_t::try_file(const QString &file)
{
    library.setFileName(file);
    const bool loaded = library.load();
    const QStringList missing = bind_entry_points();
    if (!loaded)
        trials.append(library.errorString());
    else if (missing.isEmpty())
        trials.append(file + QLatin1String(": used"));
    else
        trials.append(file + QLatin1String(": lacks ") + missing.join(QLatin1String(", ")));
    return missing.isEmpty();
}

bool visa_library_t::load()
{
    return library.load();
}

bool visa_library_t::can_open_default_rm() const noexcept
{
    return entries.open_default_rm != nullptr;
}

/// Resolves all ten entry points, and tells which are missing.
QStringList visa_library_t::bind_entry_points()
{
    QStringList missing;
    const auto bind = [this, &missing](auto &entry, const char *name) {
        entry = reinterpret_cast<std::decay_t<decltype(entry)>>(library.resolve(name));
        if (entry == nullptr)
            missing.append(QLatin1String(name));
    };
    bind(entries.open_default_rm, "viOpenDefaultRM");
    bind(entries.set_attribute, "viSetAttribute");
    bind(entries.get_attribute, "viGetAttribute");
    bind(entries.close, "viClose");
    bind(entries.find_resource, "viFindRsrc");
    bind(entries.find_next, "viFindNext");
    bind(entries.open, "viOpen");
    bind(entries.clear, "viClear");
    bind(entries.write, "viWrite");
    bind(entries.read, "viRead");
    return missing;
}

ViStatus visa_library_t::open_default_rm(ViSession *resource_manager) const
{
    return call(entries.open_default_rm, resource_manager);
}

ViStatus visa_library_t::set_attribute(ViSession object, ViAttr attribute, ViAttrState value) const
{
    return call(entries.set_attribute, object, attribute, value);
}

ViStatus visa_library_t::get_attribute(ViSession object, ViAttr attribute, void *value) const
{
    return call(entries.get_attribute, object, attribute, value);
}

ViStatus visa_library_t::close(ViSession object) const
{
    return call(entries.close, object);
}

ViStatus visa_library_t::find_resource(ViSession resource_manager, const char *expression,
                                       ViFindList *list, ViUInt32 *count, char *description) const
{
    return call(entries.find_resource, resource_manager, expression, list, count, description);
}

ViStatus visa_library_t::find_next(ViFindList list, char *description) const
{
    return call(entries.find_next, list, description);
}

ViStatus visa_library_t::open(ViSession resource_manager, const char *resource, ViAccessMode mode,
                              ViUInt32 timeout, ViSession *session) const
{
    return call(entries.open, resource_manager, resource, mode, timeout, session);
}

ViStatus visa_library_t::clear(ViSession session) const
{
    return call(entries.clear, session);
}

ViStatus visa_library_t::write(ViSession session, const unsigned char *bytes, ViUInt32 length,
                               ViUInt32 *written) const
{
    return call(entries.write, session, bytes, length, written);
}

ViStatus visa_library_t::read(ViSession session, unsigned char *buffer, ViUInt32 size,
                              ViUInt32 *count) const
{
    return call(entries.read, session, buffer, size, count);
}
