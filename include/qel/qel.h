/* SPDX-License-Identifier: BSD-3-Clause
 * Everything of the library's C interface in one include.
 */
#ifndef QEL_QEL_H
#define QEL_QEL_H

#include "qel/blas.h"
#include "qel/conv.h"
#include "qel/dfti.h"
#include "qel/dss.h"
#include "qel/lapack.h"
#include "qel/nls.h"
#include "qel/pardiso.h"
#include "qel/rng.h"
#include "qel/service.h"
#include "qel/sparse.h"
#include "qel/types.h"
#include "qel/vml.h"

#endif /* QEL_QEL_H */
