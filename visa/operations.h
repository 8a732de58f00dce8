// SPDX-License-Identifier: MIT
#pragma once

#include "visa/visa_types.h"

/// What the entry points of the same order do (VPP-4.3, chapters 3 to 6). Each library of ours
/// defines them; exceptions are the entry points' to catch.
namespace visa::operations {

// Resource manager, searches, names, sessions and attributes.

ViStatus open_default_manager(ViSession *manager);
ViStatus find_resources(ViSession manager, const char *expression, ViFindList *list,
                        ViUInt32 *count, char *name);
ViStatus find_next(ViFindList list, char *name);

/// What a resource name says, whether there is such a resource or not. The three texts may be null:
/// viParseRsrc has none of them.
ViStatus parse_resource(ViSession manager, const char *name, ViUInt16 *interface_type,
                        ViUInt16 *interface_number, char *resource_class, char *full_name,
                        char *alias);

/// `timeout_ms` is for the lock that the access mode asks for, and for reaching the instrument.
ViStatus open_session(ViSession manager, const char *name, ViAccessMode mode, ViUInt32 timeout_ms,
                      ViSession *session);
ViStatus close_object(ViObject object);
ViStatus set_object_attribute(ViObject object, ViAttr attribute, ViAttrState value);
ViStatus get_object_attribute(ViObject object, ViAttr attribute, void *value);

// Messages and replies. All of them are refused while another session has locked the resource.

/// Sends bytes to the instrument, the last of them as the end of a message when the session sends
/// END.
ViStatus write_bytes(ViSession session, const ViUInt8 *bytes, ViUInt32 count, ViUInt32 *written);

/// Waits for a reply up to the session's time-out and hands out up to `count` bytes of it. The rest
/// stays for the next read.
ViStatus read_bytes(ViSession session, ViUInt8 *bytes, ViUInt32 count, ViUInt32 *bytes_read);

/// Empties both directions of the session; the instrument's state and errors stay.
ViStatus clear_session(ViSession session);

/// The status byte; bit 4 says that a reply can be read.
ViStatus read_status_byte(ViSession session, ViUInt16 *byte);

/// A trigger (IEEE 488.2, chapter 17.8).
ViStatus assert_trigger(ViSession session, ViUInt16 protocol);

// Locks.

/// Waits for the lock until the time-out. A shared lock is for the sessions that know its key: the
/// requested one, or a new one if that is null; `access_key` (256 bytes, may be null) becomes it.
ViStatus lock_session(ViSession session, ViAccessMode kind, ViUInt32 timeout_ms,
                      const char *requested_key, char *access_key);

/// Gives back one lock, an exclusive one first.
ViStatus unlock_session(ViSession session);

// Events: a session can be told of service requests. No library of ours makes any, so that queues
// stay empty, waits end in the time-out and handlers are never called.

ViStatus enable_event(ViSession session, ViEventType type, ViUInt16 mechanism, ViUInt32 context);
ViStatus disable_event(ViSession session, ViEventType type, ViUInt16 mechanism);
ViStatus discard_events(ViSession session, ViEventType type, ViUInt16 mechanism);
ViStatus wait_on_event(ViSession session, ViEventType type, ViUInt32 timeout_ms,
                       ViEventType *found_type, ViEvent *context);
ViStatus install_handler(ViSession session, ViEventType type, ViHndlr handler, ViAddr user_handle);

/// A null handler stands for all handlers with the user handle.
ViStatus uninstall_handler(ViSession session, ViEventType type, ViHndlr handler,
                           ViAddr user_handle);

// Formatted I/O, which is not here, and texts.

/// The buffers of formatted I/O are always empty, so that a valid mask is all it takes.
ViStatus flush_buffers(ViSession session, ViUInt16 mask);

/// Sets the sizes that the attributes of the formatted I/O buffers report.
ViStatus set_buffer_size(ViSession session, ViUInt16 mask, ViUInt32 size);

/// Describes a status in words, 256 bytes at most, whatever the object is.
ViStatus describe_status(ViObject object, ViStatus status, char *text);

} // namespace visa::operations
