/* SPDX-License-Identifier: MIT */
#ifndef CORVANE_SIM_CONTROL_H
#define CORVANE_SIM_CONTROL_H

#include <stddef.h>
#include <stdint.h>

/*
 * Control of the simulated instruments behind the VISA library, for tests. The functions
 * may be called from any thread, also while VISA calls are waiting.
 *
 * Resources are named as in viOpen: any spelling of the name will do. Functions with an int
 * result return 0, or -1 when something does not exist or an argument is bad;
 * corvane_sim_last_error() then tells why. Functions that copy into a caller's buffer return
 * the full size and copy at most the capacity; texts are then cut and always end in a zero
 * byte, which the size does not count. A null buffer with capacity 0 asks for the size.
 */

#if defined(_WIN32) && defined(CORVANE_SIM_BUILD)
#define CORVANE_SIM_API __declspec(dllexport)
#elif defined(_WIN32)
#define CORVANE_SIM_API __declspec(dllimport)
#else
#define CORVANE_SIM_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* The result of the size functions for something that does not exist. */
#define CORVANE_SIM_NONE ((size_t)-1)

/* The VISA entry points. */
typedef enum corvane_sim_entry {
    CORVANE_SIM_ANY_ENTRY = 0,
    CORVANE_SIM_OPEN_DEFAULT_RM,
    CORVANE_SIM_SET_ATTRIBUTE,
    CORVANE_SIM_GET_ATTRIBUTE,
    CORVANE_SIM_CLOSE,
    CORVANE_SIM_FIND_RSRC,
    CORVANE_SIM_FIND_NEXT,
    CORVANE_SIM_OPEN,
    CORVANE_SIM_CLEAR,
    CORVANE_SIM_WRITE,
    CORVANE_SIM_READ,
    CORVANE_SIM_READ_STB,
    CORVANE_SIM_ASSERT_TRIGGER,
    CORVANE_SIM_LOCK,
    CORVANE_SIM_UNLOCK,
    CORVANE_SIM_OTHER_ENTRY /* those for names, status texts, buffers and events */
} corvane_sim_entry_t;

/*
 * What goes wrong. The four reply faults act on a viWrite (the reply to that message) and on
 * a viRead (the reply being read); at any other entry point they are spent without effect.
 */
typedef enum corvane_sim_fault_kind {
    CORVANE_SIM_FAULT_STATUS = 1, /* the call does nothing and returns the status `value` */
    CORVANE_SIM_FAULT_DELAY,      /* viRead: the reply comes `value` ms later (and may miss
                                     the time-out); others: the call takes so much longer */
    CORVANE_SIM_FAULT_LOST,       /* the reply never arrives */
    CORVANE_SIM_FAULT_TRUNCATED,  /* the reply ends after `value` bytes */
    CORVANE_SIM_FAULT_OVERSIZED,  /* the reply is padded in front of its line end with 'X'
                                     up to `value` bytes */
    CORVANE_SIM_FAULT_REPLACED,   /* the reply is `bytes`, as it stands */
    CORVANE_SIM_FAULT_UNPLUG      /* the call's resource leaves the bus before the call */
} corvane_sim_fault_kind_t;

typedef struct corvane_sim_fault
{
    corvane_sim_fault_kind_t kind;
    corvane_sim_entry_t entry; /* which calls count */
    uint32_t nth;              /* 1 is the next call that counts */
    const char *resource;      /* only calls for this resource count; null: all calls */
    int sticky;                /* 0: this one call; 1: this call and all that follow */
    int64_t value;             /* status, milliseconds or bytes, by kind */
    const void *bytes;         /* CORVANE_SIM_FAULT_REPLACED only */
    size_t length;
} corvane_sim_fault_t;

/*
 * The fleet as at program start; the log, the faults, the scripted replies and the call
 * counts are gone, the log is on. Instrument sessions and find lists are closed, resource
 * manager sessions stay usable.
 */
CORVANE_SIM_API void corvane_sim_reset(void);

/*
 * Replaces the fleet by a description in JSON (docs/simulator.md), closes the instrument
 * sessions and find lists and drops the faults and scripts. On -1 everything stays as it was.
 */
CORVANE_SIM_API int corvane_sim_load_fleet(const char *json);

/* The reason of the calling thread's last -1, one line. */
CORVANE_SIM_API size_t corvane_sim_last_error(char *text, size_t capacity);

/* The number of successful viWrite calls noted since the start, reset or clear. */
CORVANE_SIM_API size_t corvane_sim_log_count(void);

/*
 * The bytes of one noted viWrite, no zero byte added. resource_name (256 bytes) and time_ns
 * (steady clock) may be null.
 */
CORVANE_SIM_API size_t corvane_sim_log_entry(size_t index, char *resource_name, int64_t *time_ns,
                                             void *bytes, size_t capacity);
CORVANE_SIM_API void corvane_sim_log_clear(void);

/* 0 turns the log off, 1 turns it on; for long runs. A full log notes 1,000,000 writes. */
CORVANE_SIM_API void corvane_sim_log_enable(int on);

/* The number of calls of an entry point, or of all, since the start or the last reset. */
CORVANE_SIM_API uint64_t corvane_sim_call_count(corvane_sim_entry_t entry);

CORVANE_SIM_API int corvane_sim_add_fault(const corvane_sim_fault_t *fault);
CORVANE_SIM_API void corvane_sim_clear_faults(void);

/*
 * Answers a message with exactly these bytes, no line end added, instead of handing it to
 * the instrument. The message must be equal byte for byte. A null resource stands for every
 * instrument, times below 0 for ever. The script added last goes first. No reply bytes make
 * an empty reply.
 */
CORVANE_SIM_API int corvane_sim_script_reply(const char *resource, const void *message,
                                             size_t message_length, const void *reply,
                                             size_t reply_length, int times);
CORVANE_SIM_API void corvane_sim_clear_scripts(void);

/* Pulls and plugs the cable of a resource. Its sessions are lost, the instrument runs on. */
CORVANE_SIM_API int corvane_sim_unplug(const char *resource);
CORVANE_SIM_API int corvane_sim_plug(const char *resource);

/* 1 when a search would find the resource now, 0 when not; -1 for an unknown one. */
CORVANE_SIM_API int corvane_sim_is_present(const char *resource);

/* The instrument's state as a JSON text (docs/simulator.md). */
CORVANE_SIM_API size_t corvane_sim_state(const char *resource, char *json, size_t capacity);

/*
 * The firmware images an instrument received since the fleet was loaded, in order, cut to
 * their announced length. kind becomes 1 for a host and 3 for a boot image; kind and
 * announced_bytes may be null.
 */
CORVANE_SIM_API size_t corvane_sim_image_count(const char *resource);
CORVANE_SIM_API size_t corvane_sim_image(const char *resource, size_t index, int *kind,
                                         size_t *announced_bytes, void *bytes, size_t capacity);

/*
 * The device parameters an instrument received, in order. name (32 bytes, may be null)
 * becomes "PRODUCTUG", "MANUFTRUG", "PIDUG", "VIDUG" or "PRODUCTUG:ID".
 */
CORVANE_SIM_API size_t corvane_sim_parameter_count(const char *resource);
CORVANE_SIM_API size_t corvane_sim_parameter(const char *resource, size_t index, char *name,
                                             void *bytes, size_t capacity);

/*
 * Misbehaviour during an upgrade; a new call replaces the one before. Blocks count from 1,
 * beginning now, over all images.
 * - busy_polls: so many "UPREADY?" are answered with "0", from the arrival of the block
 *   busy_after_block on, or from now on when that is 0;
 * - unready_at_block: this block is refused and the instrument is not ready until it
 *   restarts (0: never);
 * - unplug_at_block: the instrument leaves the bus with this block, on all its resources,
 *   until it is plugged again (0: never).
 */
CORVANE_SIM_API int corvane_sim_upgrade_misbehave(const char *resource, uint32_t busy_polls,
                                                  uint32_t busy_after_block,
                                                  uint32_t unready_at_block,
                                                  uint32_t unplug_at_block);

#ifdef __cplusplus
}
#endif

#endif
