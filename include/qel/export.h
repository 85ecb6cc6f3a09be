/* SPDX-License-Identifier: BSD-3-Clause
 * QEL_API marks what the library offers to other programs; all else stays hidden inside it. Plain C.
 */
#ifndef QEL_EXPORT_H
#define QEL_EXPORT_H

#define QEL_API __attribute__((visibility("default")))

#endif /* QEL_EXPORT_H */
