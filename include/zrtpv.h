/*
 * zrtpv.h: the till component ZRTPVE inside a host of any language.
 *
 * A host creates a till, gives it the shop's database, sets the till's context
 * (Caja, IdAgente, IdCliente, IdAlbaran) and calls members by name or by
 * dispatch id. docs/host.md has the members, what the host may bring along
 * itself, and examples.
 *
 * Results. Every function that can fail returns one of zrtpv_status.
 * zrtpv_error() says what happened, in Spanish and fit for an operator; it
 * belongs to the calling thread and stays until that thread's next call of a
 * function that returns a status.
 *
 * Thread. A till and everything that comes out of it belong to the thread that
 * created it. Calls from another thread are refused with ZRTPV_E_THREAD and
 * change nothing. Several threads may each have tills of their own; windows
 * only exist in the thread of the application's user interface.
 *
 * Texts are UTF-8 without zero bytes. What the host passes is only read during
 * the call. What comes back in a zrtpv_value belongs to that value: release it
 * with zrtpv_clear. In a callback the roles change: arguments are valid until
 * the callback returns, and a result given with `owned` 0 is copied as soon as
 * it has returned.
 *
 * Callbacks return ZRTPV_OK, or any other status after zrtpv_fail(text). They
 * run in the till's thread, may call the till, and must not throw or jump out.
 */
#ifndef ZRTPV_H
#define ZRTPV_H

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#if defined(__GNUC__)
#define ZRTPV_API __attribute__((visibility("default")))
#else
#define ZRTPV_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Grows only with changes that old hosts would not survive; with the library's
 * file name it says which headers and libraries go together. */
#define ZRTPV_ABI 1u

enum zrtpv_status {
  ZRTPV_OK = 0,
  ZRTPV_E_ARGUMENT = 1,       /* a null pointer, broken UTF-8, a date or type that does not exist */
  ZRTPV_E_THREAD = 2,         /* called from a thread that the till does not belong to */
  ZRTPV_E_HANDLE = 3,         /* no such till or object, or no longer */
  ZRTPV_E_BUSY = 4,           /* not while one of the till's own calls is under way */
  ZRTPV_E_ABI = 5,            /* a struct of a newer header than this library's */
  ZRTPV_E_NAME = 6,           /* no member of that name */
  ZRTPV_E_ID = 7,             /* no member with that dispatch id */
  ZRTPV_E_KIND = 8,           /* the member cannot be used that way */
  ZRTPV_E_COUNT = 9,          /* wrong number of arguments */
  ZRTPV_E_VALUE = 10,         /* a value that does not fit the member; the text names both */
  ZRTPV_E_COMPONENT = 11,     /* a component created by name is missing or failed; MyBd is not set */
  ZRTPV_E_DATABASE = 12,      /* the store failed; nothing of the call was stored by halves */
  ZRTPV_E_COMMIT_UNKNOWN = 13,/* the connection broke while storing: look before repeating */
  ZRTPV_E_PRINT = 14,         /* printer or output device */
  ZRTPV_E_WINDOWS = 15,       /* built without windows, or no user interface in this thread */
  ZRTPV_E_SCRIPT = 16,        /* the scenario's text is wrong */
  ZRTPV_E_EXPECTATION = 17,   /* the scenario was played and something in it did not hold */
  ZRTPV_E_OTHER = 18
};

/* ---- values ------------------------------------------------------------ */

typedef struct zrtpv_till zrtpv_till;
typedef struct zrtpv_object zrtpv_object;

enum zrtpv_type {
  ZRTPV_NULL = 0,
  ZRTPV_BOOL = 1,
  ZRTPV_INT16 = 2,
  ZRTPV_INT32 = 3,
  ZRTPV_INT64 = 4,
  ZRTPV_DOUBLE = 5,
  ZRTPV_MONEY = 6, /* ten-thousandths of a euro */
  ZRTPV_TEXT = 7,
  ZRTPV_DATE = 8,
  ZRTPV_OBJECT = 9
};

/* Local time of the shop; years 1 to 9999. */
typedef struct zrtpv_date {
  int16_t year, month, day, hour, minute, second, millisecond;
} zrtpv_date;

/* 24 bytes. `owned` is 1 when text or object have to be released with
 * zrtpv_clear; a host sets 0 for what it keeps itself. */
typedef struct zrtpv_value {
  int32_t type;
  int32_t owned;
  union {
    int32_t boolean; /* 0 or 1 */
    int16_t int16;
    int32_t int32;
    int64_t int64; /* also MONEY */
    double number;
    struct {
      const char* bytes;
      size_t length; /* bytes, without a final zero; library texts have one behind it */
    } text;
    zrtpv_date date;
    zrtpv_object* object;
  } as;
} zrtpv_value;

static inline zrtpv_value zrtpv_null(void) {
  zrtpv_value value;
  memset(&value, 0, sizeof value);
  return value;
}
static inline zrtpv_value zrtpv_int32(int32_t number) {
  zrtpv_value value = zrtpv_null();
  value.type = ZRTPV_INT32;
  value.as.int32 = number;
  return value;
}
/* Borrows the zero-terminated text. */
static inline zrtpv_value zrtpv_text(const char* text) {
  zrtpv_value value = zrtpv_null();
  value.type = ZRTPV_TEXT;
  value.as.text.bytes = text;
  value.as.text.length = strlen(text);
  return value;
}

/* Makes `value` an owned copy of the bytes. */
ZRTPV_API int32_t zrtpv_set_text(zrtpv_value* value, const char* bytes, size_t length);
/* Releases what the value owns and makes it ZRTPV_NULL. */
ZRTPV_API int32_t zrtpv_clear(zrtpv_value* value);

/* ---- version and errors ------------------------------------------------ */

ZRTPV_API const char* zrtpv_version(void); /* "major.minor.revision" */
ZRTPV_API uint32_t zrtpv_abi(void);        /* ZRTPV_ABI of the library */

/* The calling thread's last result and its text, "" after ZRTPV_OK. */
ZRTPV_API const char* zrtpv_error(void);
ZRTPV_API int32_t zrtpv_error_code(void);
/* For a callback that is about to fail: why. The text is copied. */
ZRTPV_API void zrtpv_fail(const char* text);

/* ---- the host's own components ----------------------------------------- */

/* Sibling components that the host brings along. `create` sets *component, or
 * leaves it null for a class that the host does not have: the built-in one
 * answers then. Every component is released exactly once. Arguments taken by
 * reference are written back into `arguments`. Class and member names are
 * compared regardless of case by the built-in ones. */
typedef struct zrtpv_components {
  uint32_t size; /* sizeof(zrtpv_components) */
  void* host;    /* handed to every callback */
  int32_t (*create)(void* host, const char* class_name, void** component);
  int32_t (*get)(void* host, void* component, const char* property, zrtpv_value* result);
  int32_t (*put)(void* host, void* component, const char* property, const zrtpv_value* value);
  int32_t (*call)(void* host, void* component, const char* method, zrtpv_value* arguments,
                  size_t count, zrtpv_value* result);
  void (*release)(void* host, void* component);
} zrtpv_components;

/* ---- a till ------------------------------------------------------------ */

enum zrtpv_windows {
  ZRTPV_HEADLESS = 0, /* screens close at once, questions get their most harmless answer */
  ZRTPV_WINDOWS = 1   /* Qt; the host's QApplication when it has one, else one of its own */
};

typedef struct zrtpv_options {
  uint32_t size; /* sizeof(zrtpv_options) */
  int32_t windows;
  const char* settings; /* file of printers, devices and mail; null: the user's */
  const zrtpv_components* components; /* null for none; copied */
  /* Without windows: hears what a message box says. May be null. */
  void* host;
  void (*message)(void* host, const char* text);
} zrtpv_options;

/* Null options are those of a till without windows. */
ZRTPV_API int32_t zrtpv_create(const zrtpv_options* options, zrtpv_till** till);
/* The till's database closes when no object of it is held any more. Refused
 * with ZRTPV_E_BUSY inside of a call of the same till. */
ZRTPV_API int32_t zrtpv_release(zrtpv_till* till);

/* ---- the shop's database (sets MyBd) ----------------------------------- */

/* Refused with ZRTPV_E_BUSY inside of a call of the same till, as is putting MyBd. */

enum zrtpv_missing {
  ZRTPV_MUST_EXIST = 0,
  ZRTPV_MAKE_EMPTY = 1, /* a missing store is made, without data */
  ZRTPV_MAKE_DEMO = 2   /* ... as the demonstration shop */
};

/* `user`: id of the person logged in, kept with every sale. */
ZRTPV_API int32_t zrtpv_open_file(zrtpv_till* till, const char* path, int32_t if_missing,
                                  int32_t user);
/* A data source or connection string without a password (docs/sql-server.md). */
ZRTPV_API int32_t zrtpv_open_odbc(zrtpv_till* till, const char* connection, int32_t user);

/* The host's own open connection, in SQL Server's dialect. The rows of a
 * statement are read to their end and closed before the next one is sent. */
typedef struct zrtpv_database {
  uint32_t size; /* sizeof(zrtpv_database) */
  int32_t user;
  void* host;
  /* Runs one statement, zero-terminated. *rows stays null for one without rows. A statement
   * that fails changes nothing. */
  int32_t (*execute)(void* host, const char* sql, void** rows);
  int32_t (*columns)(void* host, void* rows, size_t* count);
  /* The name's text is copied at once. */
  int32_t (*column)(void* host, void* rows, size_t index, const char** name);
  /* To the next row, the first at first; *found 0 when there is none. */
  int32_t (*next)(void* host, void* rows, int32_t* found);
  int32_t (*field)(void* host, void* rows, size_t index, zrtpv_value* value);
  void (*close)(void* host, void* rows);
  /* A transaction takes the store's write lock at its begin. After any failure
   * of commit but ZRTPV_E_COMMIT_UNKNOWN nothing of it is stored. */
  int32_t (*begin)(void* host);
  int32_t (*commit)(void* host);
  int32_t (*rollback)(void* host);
  /* The current value of a store parameter; null: read from the table Parametros. */
  int32_t (*parameter)(void* host, const char* name, zrtpv_value* value);
  /* Called once, when nothing uses the connection any more. May be null. */
  void (*release)(void* host);
} zrtpv_database;

ZRTPV_API int32_t zrtpv_open_host(zrtpv_till* till, const zrtpv_database* database);

/* ---- members ----------------------------------------------------------- */

enum zrtpv_kind { ZRTPV_GET = 0, ZRTPV_PUT = 1, ZRTPV_PUT_REFERENCE = 2, ZRTPV_CALL = 3 };

typedef struct zrtpv_member {
  const char* name;
  uint32_t id;
  int32_t property;
  size_t arguments; /* of a call or a put */
} zrtpv_member;

/* All members in the interface's order; the table lives as long as the library. */
ZRTPV_API size_t zrtpv_members(const zrtpv_member** members);
/* By name regardless of case. */
ZRTPV_API int32_t zrtpv_id(const char* name, uint32_t* id);

/* Gets, puts or calls. Arguments by reference (msCancelaVenta, fnPendienteCliente)
 * are written back. `result` may be null; a member without one gives ZRTPV_NULL.
 * MyBd alone is put by reference. Screens return when the operator closes them. */
ZRTPV_API int32_t zrtpv_invoke(zrtpv_till* till, uint32_t id, int32_t kind, zrtpv_value* arguments,
                               size_t count, zrtpv_value* result);
ZRTPV_API int32_t zrtpv_invoke_name(zrtpv_till* till, const char* name, int32_t kind,
                                    zrtpv_value* arguments, size_t count, zrtpv_value* result);
ZRTPV_API int32_t zrtpv_get(zrtpv_till* till, const char* property, zrtpv_value* result);
/* MyBd goes by reference by itself. */
ZRTPV_API int32_t zrtpv_put(zrtpv_till* till, const char* property, const zrtpv_value* value);
ZRTPV_API int32_t zrtpv_call(zrtpv_till* till, const char* method, zrtpv_value* arguments,
                             size_t count, zrtpv_value* result);

/* Plays a scenario's text on a till without windows: its commands act as the
 * operator of whatever the till opens. The context set before holds in it and
 * what it changes stays; paper, mail and devices go into the transcript alone.
 * `transcript` (owned, may be null) is also given when an expectation failed. */
ZRTPV_API int32_t zrtpv_play(zrtpv_till* till, const char* script, zrtpv_value* transcript);

/* ---- objects: MyBd and what comes out of it ---------------------------- */

/* An object stays usable while it is retained, its till released or not. What a
 * callback is given has to be retained to outlive the callback. */
ZRTPV_API int32_t zrtpv_object_retain(zrtpv_object* object);
ZRTPV_API int32_t zrtpv_object_release(zrtpv_object* object);
ZRTPV_API int32_t zrtpv_object_get(zrtpv_object* object, const char* property, zrtpv_value* result);
ZRTPV_API int32_t zrtpv_object_put(zrtpv_object* object, const char* property,
                                   const zrtpv_value* value);
ZRTPV_API int32_t zrtpv_object_call(zrtpv_object* object, const char* method,
                                    zrtpv_value* arguments, size_t count, zrtpv_value* result);

#ifdef __cplusplus
}
#endif

#endif /* ZRTPV_H */
