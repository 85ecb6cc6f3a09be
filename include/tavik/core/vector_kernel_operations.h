// SPDX-License-Identifier: BSD-3-Clause
// The vector operations of ITavikKernel and of DotNetBlas, which implements them: the two classes have this
// one list in their bodies, as pure functions and as overrides.
//
// Vectors are (n, block, stride), matrices (rows, cols, block, row stride, column stride) over the element
// types named by their blocks; strides have any sign. Operands that are written may be the same block as one
// that is read, element for element, unless told otherwise; they must not overlap in another way. Every
// operation throws std::out_of_range before it reads or writes a number if its first address, and where it
// loops itself its last one too, lies outside the array.

// ---- Vectors, through the numeric entries ----

/// y := x. Nothing happens for n <= 0. xOffset and yOffset are added to the blocks' own offsets after the
/// adjustment for a negative stride.
TAVIK_OPERATION void copy(int n, const DoubleDataBlock& x, int incx, const DoubleDataBlock& y,
                          int incy) TAVIK_END;
TAVIK_OPERATION void copy(int n, const FloatDataBlock& x, int incx, const FloatDataBlock& y,
                          int incy) TAVIK_END;
TAVIK_OPERATION void copy(int n, const DoubleComplexDataBlock& x, int incx, const DoubleComplexDataBlock& y,
                          int incy) TAVIK_END;
TAVIK_OPERATION void copy(int n, const FloatComplexDataBlock& x, int incx, const FloatComplexDataBlock& y,
                          int incy) TAVIK_END;
TAVIK_OPERATION void copy(int n, const DoubleDataBlock& x, int xOffset, int incx, const DoubleDataBlock& y,
                          int yOffset, int incy) TAVIK_END;
TAVIK_OPERATION void copy(int n, const FloatDataBlock& x, int xOffset, int incx, const FloatDataBlock& y,
                          int yOffset, int incy) TAVIK_END;
TAVIK_OPERATION void copy(int n, const DoubleComplexDataBlock& x, int xOffset, int incx,
                          const DoubleComplexDataBlock& y, int yOffset, int incy) TAVIK_END;
TAVIK_OPERATION void copy(int n, const FloatComplexDataBlock& x, int xOffset, int incx,
                          const FloatComplexDataBlock& y, int yOffset, int incy) TAVIK_END;

/// y := a x + y. Nothing happens for n < 1; the float form has no such test of its own and so looks at the
/// blocks first.
TAVIK_OPERATION void axpy(int n, double a, const DoubleDataBlock& x, int incx, const DoubleDataBlock& y,
                          int incy) TAVIK_END;
TAVIK_OPERATION void axpy(int n, float a, const FloatDataBlock& x, int incx, const FloatDataBlock& y,
                          int incy) TAVIK_END;
TAVIK_OPERATION void axpy(int n, DoubleComplex a, const DoubleComplexDataBlock& x, int incx,
                          const DoubleComplexDataBlock& y, int incy) TAVIK_END;
TAVIK_OPERATION void axpy(int n, FloatComplex a, const FloatComplexDataBlock& x, int incx,
                          const FloatComplexDataBlock& y, int incy) TAVIK_END;

/// x := a x. Scale does nothing for n < 1.
TAVIK_OPERATION void Scale(int n, double a, const DoubleDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION void Scale(int n, float a, const FloatDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION void scal(int n, double a, const DoubleComplexDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION void scal(int n, float a, const FloatComplexDataBlock& x, int incx) TAVIK_END;

/// The sum of x_k y_k, unconjugated; 0 for n <= 0.
TAVIK_OPERATION double dot(int n, const DoubleDataBlock& x, int incx, const DoubleDataBlock& y,
                           int incy) TAVIK_END;
TAVIK_OPERATION float dot(int n, const FloatDataBlock& x, int incx, const FloatDataBlock& y,
                          int incy) TAVIK_END;
TAVIK_OPERATION DoubleComplex dot(int n, const DoubleComplexDataBlock& x, int incx,
                                  const DoubleComplexDataBlock& y, int incy) TAVIK_END;
TAVIK_OPERATION FloatComplex dot(int n, const FloatComplexDataBlock& x, int incx,
                                 const FloatComplexDataBlock& y, int incy) TAVIK_END;
/// The sum of conj(x_k) y_k.
TAVIK_OPERATION DoubleComplex conjdot(int n, const DoubleComplexDataBlock& x, int incx,
                                      const DoubleComplexDataBlock& y, int incy) TAVIK_END;
TAVIK_OPERATION FloatComplex conjdot(int n, const FloatComplexDataBlock& x, int incx,
                                     const FloatComplexDataBlock& y, int incy) TAVIK_END;

/// Position, from 0, of the first element of largest (smallest) |x_k|, of |re| + |im| for complex numbers;
/// -1 for n <= 0 or a stride that is not positive.
TAVIK_OPERATION int amax(int n, const DoubleDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION int amax(int n, const FloatDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION int amax(int n, const DoubleComplexDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION int amax(int n, const FloatComplexDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION int amax(int n, const Array<double>& x) TAVIK_END;
TAVIK_OPERATION int amax(int n, const Array<DoubleComplex>& x) TAVIK_END;
TAVIK_OPERATION int amin(int n, const DoubleDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION int amin(int n, const FloatDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION int amin(int n, const DoubleComplexDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION int amin(int n, const FloatComplexDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION int amin(int n, const Array<double>& x) TAVIK_END;
TAVIK_OPERATION int amin(int n, const Array<DoubleComplex>& x) TAVIK_END;

/// The sum of |x_k|, of |re| + |im| for complex numbers.
TAVIK_OPERATION double asum(int n, const DoubleDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION float asum(int n, const FloatDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION double asum(int n, const DoubleComplexDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION float asum(int n, const FloatComplexDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION double asum(int n, const Array<double>& x) TAVIK_END;
TAVIK_OPERATION double asum(int n, const Array<DoubleComplex>& x) TAVIK_END;
/// Euclidean norm.
TAVIK_OPERATION double nrm2(int n, const Array<double>& x) TAVIK_END;
TAVIK_OPERATION double nrm2(int n, const Array<DoubleComplex>& x) TAVIK_END;

/// x := s x; y := s x.
TAVIK_OPERATION void Multiply(int n, double s, const DoubleDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION void Multiply(int n, float s, const FloatDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION void Multiply(int n, double s, const DoubleDataBlock& x, int incx, const DoubleDataBlock& y,
                              int incy) TAVIK_END;
TAVIK_OPERATION void Multiply(int n, float s, const FloatDataBlock& x, int incx, const FloatDataBlock& y,
                              int incy) TAVIK_END;
/// x := -x; y := -x.
TAVIK_OPERATION void Negate(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION void Negate(int n, const FloatDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION void Negate(int n, const DoubleComplexDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION void Negate(int n, const FloatComplexDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION void Negate(int n, const DoubleDataBlock& x, int incx, const DoubleDataBlock& y,
                            int incy) TAVIK_END;
TAVIK_OPERATION void Negate(int n, const FloatDataBlock& x, int incx, const FloatDataBlock& y,
                            int incy) TAVIK_END;
TAVIK_OPERATION void Negate(int n, const DoubleComplexDataBlock& x, int incx, const DoubleComplexDataBlock& y,
                            int incy) TAVIK_END;
TAVIK_OPERATION void Negate(int n, const FloatComplexDataBlock& x, int incx, const FloatComplexDataBlock& y,
                            int incy) TAVIK_END;

/// y := x + y; z := x + y.
TAVIK_OPERATION void Add(int n, const DoubleDataBlock& x, int incx, const DoubleDataBlock& y,
                         int incy) TAVIK_END;
TAVIK_OPERATION void Add(int n, const FloatDataBlock& x, int incx, const FloatDataBlock& y,
                         int incy) TAVIK_END;
TAVIK_OPERATION void Add(int n, const DoubleComplexDataBlock& x, int incx, const DoubleComplexDataBlock& y,
                         int incy) TAVIK_END;
TAVIK_OPERATION void Add(int n, const FloatComplexDataBlock& x, int incx, const FloatComplexDataBlock& y,
                         int incy) TAVIK_END;
TAVIK_OPERATION void Add(int n, const DoubleDataBlock& x, int incx, const DoubleDataBlock& y, int incy,
                         const DoubleDataBlock& z, int incz) TAVIK_END;
TAVIK_OPERATION void Add(int n, const FloatDataBlock& x, int incx, const FloatDataBlock& y, int incy,
                         const FloatDataBlock& z, int incz) TAVIK_END;
TAVIK_OPERATION void Add(int n, const DoubleComplexDataBlock& x, int incx, const DoubleComplexDataBlock& y,
                         int incy, const DoubleComplexDataBlock& z, int incz) TAVIK_END;
TAVIK_OPERATION void Add(int n, const FloatComplexDataBlock& x, int incx, const FloatComplexDataBlock& y,
                         int incy, const FloatComplexDataBlock& z, int incz) TAVIK_END;
/// x := x - y (the first operand is the target, unlike in Add); z := x - y.
TAVIK_OPERATION void Subtract(int n, const DoubleDataBlock& x, int incx, const DoubleDataBlock& y,
                              int incy) TAVIK_END;
TAVIK_OPERATION void Subtract(int n, const FloatDataBlock& x, int incx, const FloatDataBlock& y,
                              int incy) TAVIK_END;
TAVIK_OPERATION void Subtract(int n, const DoubleComplexDataBlock& x, int incx,
                              const DoubleComplexDataBlock& y, int incy) TAVIK_END;
TAVIK_OPERATION void Subtract(int n, const FloatComplexDataBlock& x, int incx, const FloatComplexDataBlock& y,
                              int incy) TAVIK_END;
TAVIK_OPERATION void Subtract(int n, const DoubleDataBlock& x, int incx, const DoubleDataBlock& y, int incy,
                              const DoubleDataBlock& z, int incz) TAVIK_END;
TAVIK_OPERATION void Subtract(int n, const FloatDataBlock& x, int incx, const FloatDataBlock& y, int incy,
                              const FloatDataBlock& z, int incz) TAVIK_END;
TAVIK_OPERATION void Subtract(int n, const DoubleComplexDataBlock& x, int incx,
                              const DoubleComplexDataBlock& y, int incy, const DoubleComplexDataBlock& z,
                              int incz) TAVIK_END;
TAVIK_OPERATION void Subtract(int n, const FloatComplexDataBlock& x, int incx, const FloatComplexDataBlock& y,
                              int incy, const FloatComplexDataBlock& z, int incz) TAVIK_END;

// ---- Matrices, column by column through the same entries. cols <= 0 does nothing ----

/// A := a A; B := a A.
TAVIK_OPERATION void Scale(int rows, int cols, double a, const DoubleDataBlock& AData, int ARowStride,
                           int AColStride) TAVIK_END;
TAVIK_OPERATION void Scale(int rows, int cols, float a, const FloatDataBlock& AData, int ARowStride,
                           int AColStride) TAVIK_END;
TAVIK_OPERATION void Scale(int rows, int cols, DoubleComplex a, const DoubleComplexDataBlock& AData,
                           int ARowStride, int AColStride) TAVIK_END;
TAVIK_OPERATION void Scale(int rows, int cols, FloatComplex a, const FloatComplexDataBlock& AData,
                           int ARowStride, int AColStride) TAVIK_END;
TAVIK_OPERATION void Scale(int rows, int cols, double a, const DoubleDataBlock& AData, int ARowStride,
                           int AColStride, const DoubleDataBlock& BData, int BRowStride,
                           int BColStride) TAVIK_END;
TAVIK_OPERATION void Scale(int rows, int cols, float a, const FloatDataBlock& AData, int ARowStride,
                           int AColStride, const FloatDataBlock& BData, int BRowStride,
                           int BColStride) TAVIK_END;
TAVIK_OPERATION void Scale(int rows, int cols, DoubleComplex a, const DoubleComplexDataBlock& AData,
                           int ARowStride, int AColStride, const DoubleComplexDataBlock& BData,
                           int BRowStride, int BColStride) TAVIK_END;
TAVIK_OPERATION void Scale(int rows, int cols, FloatComplex a, const FloatComplexDataBlock& AData,
                           int ARowStride, int AColStride, const FloatComplexDataBlock& BData, int BRowStride,
                           int BColStride) TAVIK_END;
/// B := A + B; C := A + B.
TAVIK_OPERATION void Add(int rows, int cols, const DoubleDataBlock& AData, int ARowStride, int AColStride,
                         const DoubleDataBlock& BData, int BRowStride, int BColStride) TAVIK_END;
TAVIK_OPERATION void Add(int rows, int cols, const FloatDataBlock& AData, int ARowStride, int AColStride,
                         const FloatDataBlock& BData, int BRowStride, int BColStride) TAVIK_END;
TAVIK_OPERATION void Add(int rows, int cols, const DoubleComplexDataBlock& AData, int ARowStride,
                         int AColStride, const DoubleComplexDataBlock& BData, int BRowStride,
                         int BColStride) TAVIK_END;
TAVIK_OPERATION void Add(int rows, int cols, const FloatComplexDataBlock& AData, int ARowStride,
                         int AColStride, const FloatComplexDataBlock& BData, int BRowStride,
                         int BColStride) TAVIK_END;
TAVIK_OPERATION void Add(int rows, int cols, const DoubleDataBlock& AData, int ARowStride, int AColStride,
                         const DoubleDataBlock& BData, int BRowStride, int BColStride,
                         const DoubleDataBlock& CData, int CRowStride, int CColStride) TAVIK_END;
TAVIK_OPERATION void Add(int rows, int cols, const FloatDataBlock& AData, int ARowStride, int AColStride,
                         const FloatDataBlock& BData, int BRowStride, int BColStride,
                         const FloatDataBlock& CData, int CRowStride, int CColStride) TAVIK_END;
TAVIK_OPERATION void Add(int rows, int cols, const DoubleComplexDataBlock& AData, int ARowStride,
                         int AColStride, const DoubleComplexDataBlock& BData, int BRowStride, int BColStride,
                         const DoubleComplexDataBlock& CData, int CRowStride, int CColStride) TAVIK_END;
TAVIK_OPERATION void Add(int rows, int cols, const FloatComplexDataBlock& AData, int ARowStride,
                         int AColStride, const FloatComplexDataBlock& BData, int BRowStride, int BColStride,
                         const FloatComplexDataBlock& CData, int CRowStride, int CColStride) TAVIK_END;
/// A := A - B; C := A - B.
TAVIK_OPERATION void Subtract(int rows, int cols, const DoubleDataBlock& AData, int ARowStride,
                              int AColStride, const DoubleDataBlock& BData, int BRowStride,
                              int BColStride) TAVIK_END;
TAVIK_OPERATION void Subtract(int rows, int cols, const FloatDataBlock& AData, int ARowStride, int AColStride,
                              const FloatDataBlock& BData, int BRowStride, int BColStride) TAVIK_END;
TAVIK_OPERATION void Subtract(int rows, int cols, const DoubleComplexDataBlock& AData, int ARowStride,
                              int AColStride, const DoubleComplexDataBlock& BData, int BRowStride,
                              int BColStride) TAVIK_END;
TAVIK_OPERATION void Subtract(int rows, int cols, const FloatComplexDataBlock& AData, int ARowStride,
                              int AColStride, const FloatComplexDataBlock& BData, int BRowStride,
                              int BColStride) TAVIK_END;
TAVIK_OPERATION void Subtract(int rows, int cols, const DoubleDataBlock& AData, int ARowStride,
                              int AColStride, const DoubleDataBlock& BData, int BRowStride, int BColStride,
                              const DoubleDataBlock& CData, int CRowStride, int CColStride) TAVIK_END;
TAVIK_OPERATION void Subtract(int rows, int cols, const FloatDataBlock& AData, int ARowStride, int AColStride,
                              const FloatDataBlock& BData, int BRowStride, int BColStride,
                              const FloatDataBlock& CData, int CRowStride, int CColStride) TAVIK_END;
TAVIK_OPERATION void Subtract(int rows, int cols, const DoubleComplexDataBlock& AData, int ARowStride,
                              int AColStride, const DoubleComplexDataBlock& BData, int BRowStride,
                              int BColStride, const DoubleComplexDataBlock& CData, int CRowStride,
                              int CColStride) TAVIK_END;
TAVIK_OPERATION void Subtract(int rows, int cols, const FloatComplexDataBlock& AData, int ARowStride,
                              int AColStride, const FloatComplexDataBlock& BData, int BRowStride,
                              int BColStride, const FloatComplexDataBlock& CData, int CRowStride,
                              int CColStride) TAVIK_END;
/// B := A. Row and column offsets, in elements, are added to a column's start before the adjustment.
TAVIK_OPERATION void Copy(int rows, int cols, const DoubleDataBlock& AData, int ARowStride, int AColStride,
                          const DoubleDataBlock& BData, int BRowStride, int BColStride) TAVIK_END;
TAVIK_OPERATION void Copy(int rows, int cols, const FloatDataBlock& AData, int ARowStride, int AColStride,
                          const FloatDataBlock& BData, int BRowStride, int BColStride) TAVIK_END;
TAVIK_OPERATION void Copy(int rows, int cols, const DoubleComplexDataBlock& AData, int ARowStride,
                          int AColStride, const DoubleComplexDataBlock& BData, int BRowStride,
                          int BColStride) TAVIK_END;
TAVIK_OPERATION void Copy(int rows, int cols, const FloatComplexDataBlock& AData, int ARowStride,
                          int AColStride, const FloatComplexDataBlock& BData, int BRowStride,
                          int BColStride) TAVIK_END;
TAVIK_OPERATION void Copy(int rows, int cols, const DoubleDataBlock& AData, int ARowOffset, int AColOffset,
                          int ARowStride, int AColStride, const DoubleDataBlock& BData, int BRowOffset,
                          int BColOffset, int BRowStride, int BColStride) TAVIK_END;
TAVIK_OPERATION void Copy(int rows, int cols, const FloatDataBlock& AData, int ARowOffset, int AColOffset,
                          int ARowStride, int AColStride, const FloatDataBlock& BData, int BRowOffset,
                          int BColOffset, int BRowStride, int BColStride) TAVIK_END;
TAVIK_OPERATION void Copy(int rows, int cols, const DoubleComplexDataBlock& AData, int ARowOffset,
                          int AColOffset, int ARowStride, int AColStride, const DoubleComplexDataBlock& BData,
                          int BRowOffset, int BColOffset, int BRowStride, int BColStride) TAVIK_END;
TAVIK_OPERATION void Copy(int rows, int cols, const FloatComplexDataBlock& AData, int ARowOffset,
                          int AColOffset, int ARowStride, int AColStride, const FloatComplexDataBlock& BData,
                          int BRowOffset, int BColOffset, int BRowStride, int BColStride) TAVIK_END;

// ---- Element by element ----

/// x := x + 1, x := x - 1.
TAVIK_OPERATION void Increment(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION void Increment(int n, const FloatDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION void Increment(int rows, int cols, const DoubleDataBlock& AData, int ARowStride,
                               int AColStride) TAVIK_END;
TAVIK_OPERATION void Increment(int rows, int cols, const FloatDataBlock& AData, int ARowStride,
                               int AColStride) TAVIK_END;
TAVIK_OPERATION void Decrement(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION void Decrement(int n, const FloatDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION void Decrement(int rows, int cols, const DoubleDataBlock& AData, int ARowStride,
                               int AColStride) TAVIK_END;
TAVIK_OPERATION void Decrement(int rows, int cols, const FloatDataBlock& AData, int ARowStride,
                               int AColStride) TAVIK_END;

/// y := x y; z := x y; B := A B; C := A B, each element with its like.
TAVIK_OPERATION void Multiply(int n, const DoubleDataBlock& x, int xStride, const DoubleDataBlock& y,
                              int yStride) TAVIK_END;
TAVIK_OPERATION void Multiply(int n, const DoubleComplexDataBlock& x, int xStride,
                              const DoubleComplexDataBlock& y, int yStride) TAVIK_END;
TAVIK_OPERATION void Multiply(int n, const FloatComplexDataBlock& x, int xStride,
                              const FloatComplexDataBlock& y, int yStride) TAVIK_END;
TAVIK_OPERATION void Multiply(int n, const DoubleDataBlock& x, int xStride, const DoubleDataBlock& y,
                              int yStride, const DoubleDataBlock& z, int zStride) TAVIK_END;
TAVIK_OPERATION void Multiply(int n, const FloatDataBlock& x, int xStride, const FloatDataBlock& y,
                              int yStride, const FloatDataBlock& z, int zStride) TAVIK_END;
TAVIK_OPERATION void Multiply(int n, const DoubleComplexDataBlock& x, int xStride,
                              const DoubleComplexDataBlock& y, int yStride, const DoubleComplexDataBlock& z,
                              int zStride) TAVIK_END;
TAVIK_OPERATION void Multiply(int n, const FloatComplexDataBlock& x, int xStride,
                              const FloatComplexDataBlock& y, int yStride, const FloatComplexDataBlock& z,
                              int zStride) TAVIK_END;
TAVIK_OPERATION void Multiply(int rows, int cols, const DoubleDataBlock& AData, int ARowStride,
                              int AColStride, const DoubleDataBlock& BData, int BRowStride,
                              int BColStride) TAVIK_END;
TAVIK_OPERATION void Multiply(int rows, int cols, const FloatDataBlock& AData, int ARowStride, int AColStride,
                              const FloatDataBlock& BData, int BRowStride, int BColStride) TAVIK_END;
TAVIK_OPERATION void Multiply(int rows, int cols, const DoubleComplexDataBlock& AData, int ARowStride,
                              int AColStride, const DoubleComplexDataBlock& BData, int BRowStride,
                              int BColStride) TAVIK_END;
TAVIK_OPERATION void Multiply(int rows, int cols, const FloatComplexDataBlock& AData, int ARowStride,
                              int AColStride, const FloatComplexDataBlock& BData, int BRowStride,
                              int BColStride) TAVIK_END;
TAVIK_OPERATION void Multiply(int rows, int cols, const DoubleDataBlock& AData, int ARowStride,
                              int AColStride, const DoubleDataBlock& BData, int BRowStride, int BColStride,
                              const DoubleDataBlock& CData, int CRowStride, int CColStride) TAVIK_END;
TAVIK_OPERATION void Multiply(int rows, int cols, const FloatDataBlock& AData, int ARowStride, int AColStride,
                              const FloatDataBlock& BData, int BRowStride, int BColStride,
                              const FloatDataBlock& CData, int CRowStride, int CColStride) TAVIK_END;
TAVIK_OPERATION void Multiply(int rows, int cols, const DoubleComplexDataBlock& AData, int ARowStride,
                              int AColStride, const DoubleComplexDataBlock& BData, int BRowStride,
                              int BColStride, const DoubleComplexDataBlock& CData, int CRowStride,
                              int CColStride) TAVIK_END;
TAVIK_OPERATION void Multiply(int rows, int cols, const FloatComplexDataBlock& AData, int ARowStride,
                              int AColStride, const FloatComplexDataBlock& BData, int BRowStride,
                              int BColStride, const FloatComplexDataBlock& CData, int CRowStride,
                              int CColStride) TAVIK_END;
/// x := a x; y := a x.
TAVIK_OPERATION void Multiply(int n, DoubleComplex a, const DoubleComplexDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION void Multiply(int n, FloatComplex a, const FloatComplexDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION void Multiply(int n, DoubleComplex a, const DoubleComplexDataBlock& x, int incx,
                              const DoubleComplexDataBlock& y, int incy) TAVIK_END;
TAVIK_OPERATION void Multiply(int n, FloatComplex a, const FloatComplexDataBlock& x, int incx,
                              const FloatComplexDataBlock& y, int incy) TAVIK_END;

/// x := x / y; z := x / y; A := A / B; C := A / B, each element by its like. Complex quotients are
/// (x conj(y)) / |y|^2 without scaling: |y|^2 may overflow or underflow.
TAVIK_OPERATION void Divide(int n, const DoubleDataBlock& x, int incx, const DoubleDataBlock& y,
                            int incy) TAVIK_END;
TAVIK_OPERATION void Divide(int n, const FloatDataBlock& x, int incx, const FloatDataBlock& y,
                            int incy) TAVIK_END;
TAVIK_OPERATION void Divide(int n, const DoubleComplexDataBlock& x, int incx, const DoubleComplexDataBlock& y,
                            int incy) TAVIK_END;
TAVIK_OPERATION void Divide(int n, const FloatComplexDataBlock& x, int incx, const FloatComplexDataBlock& y,
                            int incy) TAVIK_END;
TAVIK_OPERATION void Divide(int n, const DoubleDataBlock& x, int incx, const DoubleDataBlock& y, int incy,
                            const DoubleDataBlock& z, int incz) TAVIK_END;
TAVIK_OPERATION void Divide(int n, const FloatDataBlock& x, int incx, const FloatDataBlock& y, int incy,
                            const FloatDataBlock& z, int incz) TAVIK_END;
TAVIK_OPERATION void Divide(int n, const DoubleComplexDataBlock& x, int incx, const DoubleComplexDataBlock& y,
                            int incy, const DoubleComplexDataBlock& z, int incz) TAVIK_END;
TAVIK_OPERATION void Divide(int n, const FloatComplexDataBlock& x, int incx, const FloatComplexDataBlock& y,
                            int incy, const FloatComplexDataBlock& z, int incz) TAVIK_END;
TAVIK_OPERATION void Divide(int rows, int cols, const DoubleDataBlock& AData, int ARowStride, int AColStride,
                            const DoubleDataBlock& BData, int BRowStride, int BColStride) TAVIK_END;
TAVIK_OPERATION void Divide(int rows, int cols, const FloatDataBlock& AData, int ARowStride, int AColStride,
                            const FloatDataBlock& BData, int BRowStride, int BColStride) TAVIK_END;
TAVIK_OPERATION void Divide(int rows, int cols, const DoubleComplexDataBlock& AData, int ARowStride,
                            int AColStride, const DoubleComplexDataBlock& BData, int BRowStride,
                            int BColStride) TAVIK_END;
TAVIK_OPERATION void Divide(int rows, int cols, const FloatComplexDataBlock& AData, int ARowStride,
                            int AColStride, const FloatComplexDataBlock& BData, int BRowStride,
                            int BColStride) TAVIK_END;
TAVIK_OPERATION void Divide(int rows, int cols, const DoubleDataBlock& AData, int ARowStride, int AColStride,
                            const DoubleDataBlock& BData, int BRowStride, int BColStride,
                            const DoubleDataBlock& CData, int CRowStride, int CColStride) TAVIK_END;
TAVIK_OPERATION void Divide(int rows, int cols, const FloatDataBlock& AData, int ARowStride, int AColStride,
                            const FloatDataBlock& BData, int BRowStride, int BColStride,
                            const FloatDataBlock& CData, int CRowStride, int CColStride) TAVIK_END;
TAVIK_OPERATION void Divide(int rows, int cols, const DoubleComplexDataBlock& AData, int ARowStride,
                            int AColStride, const DoubleComplexDataBlock& BData, int BRowStride,
                            int BColStride, const DoubleComplexDataBlock& CData, int CRowStride,
                            int CColStride) TAVIK_END;
TAVIK_OPERATION void Divide(int rows, int cols, const FloatComplexDataBlock& AData, int ARowStride,
                            int AColStride, const FloatComplexDataBlock& BData, int BRowStride,
                            int BColStride, const FloatComplexDataBlock& CData, int CRowStride,
                            int CColStride) TAVIK_END;
/// x := x / a for a complex a, but x := a / x for a real one.
TAVIK_OPERATION void Divide(int n, DoubleComplex a, const DoubleComplexDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION void Divide(int n, FloatComplex a, const FloatComplexDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION void Divide(int n, double a, const DoubleComplexDataBlock& x, int incx) TAVIK_END;
TAVIK_OPERATION void Divide(int n, float a, const FloatComplexDataBlock& x, int incx) TAVIK_END;

// ---- Reductions and sequences ----

/// The sum, from the first element on. 0 for n <= 0.
TAVIK_OPERATION double Sum(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION float Sum(int n, const FloatDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION DoubleComplex Sum(int n, const DoubleComplexDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION FloatComplex Sum(int n, const FloatComplexDataBlock& x, int stride) TAVIK_END;
/// The product, starting from the first element, which is read whatever n is.
TAVIK_OPERATION double Product(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION float Product(int n, const FloatDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION DoubleComplex Product(int n, const DoubleComplexDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION FloatComplex Product(int n, const FloatComplexDataBlock& x, int stride) TAVIK_END;
/// y_0 = x_0, y_k = y_(k-1) + x_k. y is contiguous.
TAVIK_OPERATION void CumulativeSum(int n, const DoubleDataBlock& x, int stride,
                                   const DoubleDataBlock& y) TAVIK_END;
TAVIK_OPERATION void CumulativeSum(int n, const FloatDataBlock& x, int stride,
                                   const FloatDataBlock& y) TAVIK_END;
/// y_0 = x_0, y_k = x_k - x_(k-1). y is contiguous.
TAVIK_OPERATION void Delta(int n, const DoubleDataBlock& x, int stride, const DoubleDataBlock& y) TAVIK_END;
TAVIK_OPERATION void Delta(int n, const FloatDataBlock& x, int stride, const FloatDataBlock& y) TAVIK_END;
TAVIK_OPERATION void Delta(int n, const DoubleComplexDataBlock& x, int stride,
                           const DoubleComplexDataBlock& y) TAVIK_END;
TAVIK_OPERATION void Delta(int n, const FloatComplexDataBlock& x, int stride,
                           const FloatComplexDataBlock& y) TAVIK_END;

/// First position, from 0, of the largest (smallest) element, and its value. Element 0 is read whatever n is;
/// a NaN there stays, one further on never wins.
TAVIK_OPERATION int MaxIndex(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION int MaxIndex(int n, const FloatDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION int MinIndex(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION int MinIndex(int n, const FloatDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION double MaxValue(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION float MaxValue(int n, const FloatDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION double MinValue(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION float MinValue(int n, const FloatDataBlock& x, int stride) TAVIK_END;
/// The same without NaN elements. The position is -1 if there is no element above the type's lowest number
/// (below its largest); the value is NaN if all elements are.
TAVIK_OPERATION int NaNMaxIndex(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION int NaNMaxIndex(int n, const FloatDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION int NaNMinIndex(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION int NaNMinIndex(int n, const FloatDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION double NaNMaxValue(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION float NaNMaxValue(int n, const FloatDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION double NaNMinValue(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION float NaNMinValue(int n, const FloatDataBlock& x, int stride) TAVIK_END;
/// The number of elements that are not NaN, their sum and mean (0 / 0 if there are none).
TAVIK_OPERATION int NaNCount(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION int NaNCount(int n, const FloatDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION double NaNSum(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION float NaNSum(int n, const FloatDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION double NaNMean(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION float NaNMean(int n, const FloatDataBlock& x, int stride) TAVIK_END;
/// SumOfSquares without NaN elements; the double form has single precision.
TAVIK_OPERATION double NaNSumOfSquares(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION float NaNSumOfSquares(int n, const FloatDataBlock& x, int stride) TAVIK_END;
/// The mean squared deviation from NaNMean, in two passes, without NaN elements.
TAVIK_OPERATION double NaNVariance(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION float NaNVariance(int n, const FloatDataBlock& x, int stride) TAVIK_END;

/// The sum of squared deviations from the mean, in one pass: sum(x^2) - sum(x)^2 / n, which cancels where the
/// mean is large beside the deviations. Float types sum in double. Complex numbers are squared, not
/// multiplied by their conjugates.
TAVIK_OPERATION double SumOfSquares(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION float SumOfSquares(int n, const FloatDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION DoubleComplex SumOfSquares(int n, const DoubleComplexDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION FloatComplex SumOfSquares(int n, const FloatComplexDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION double SumOfSquares(const Array<double>& data) TAVIK_END;
/// SumOfSquares / n; NaN for n = 0.
TAVIK_OPERATION double Variance(int n, const DoubleDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION float Variance(int n, const FloatDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION DoubleComplex Variance(int n, const DoubleComplexDataBlock& x, int stride) TAVIK_END;
TAVIK_OPERATION FloatComplex Variance(int n, const FloatComplexDataBlock& x, int stride) TAVIK_END;

// ---- Guarded and fast division, random numbers ----

/// c_i := a_i / b_i, with epsilon in place of a b_i that is exactly 0. Throws Core::ArgumentException if
/// len exceeds the length of an array.
TAVIK_OPERATION void SafeDivide(int len, const Array<double>& a, const Array<double>& b,
                                const Array<double>& c) TAVIK_END;
/// A := A / B, C := A / B in the same way; no test of lengths beside the checked access.
TAVIK_OPERATION void SafeDivide(int rows, int cols, const DoubleDataBlock& AData, int ARowStride,
                                int AColStride, const DoubleDataBlock& BData, int BRowStride,
                                int BColStride) TAVIK_END;
TAVIK_OPERATION void SafeDivide(int rows, int cols, const DoubleDataBlock& AData, int ARowStride,
                                int AColStride, const DoubleDataBlock& BData, int BRowStride, int BColStride,
                                const DoubleDataBlock& CData, int CRowStride, int CColStride) TAVIK_END;
/// Elements below 0 become 0.
TAVIK_OPERATION void MakeNonNegative(int rows, int cols, const DoubleDataBlock& AData, int ARowStride,
                                     int AColStride) TAVIK_END;
/// C := A / B over n contiguous elements by vector math (vdDiv in qel/vml.h): statuses and reactions are
/// those of the calling thread.
TAVIK_OPERATION void FastDivide(int n, const DoubleDataBlock& AData, const DoubleDataBlock& BData,
                                const DoubleDataBlock& CData) TAVIK_END;
/// Fills deviants with uniform numbers in [min, max), the same ones for the same seed. If min is not below
/// max, a message is printed and the numbers stay as they are.
TAVIK_OPERATION void UniformRandomNumbers(unsigned seed, double min, double max,
                                          const Array<double>& deviants) TAVIK_END;
/// Gives the library's cached work memory back.
TAVIK_OPERATION void QelFreeBuffers() TAVIK_END;

// ---- Products. Op(A) is m x k, op(B) k x n, C m x n; op is told by the name ----
//
// If all operands are stored column-major without gaps, C := C + op(A) op(B) by one matrix product, and zeroC
// clears C first (without the argument it isn't). If one operand is not, C := op(A) op(B) by a dot product
// per element, whatever zeroC says.

/// C with A B.
TAVIK_OPERATION void Product(int m, int n, int k, const DoubleDataBlock& a, int aRowStride, int aColStride,
                             const DoubleDataBlock& b, int bRowStride, int bColStride,
                             const DoubleDataBlock& c, int cRowStride, int cColStride) TAVIK_END;
TAVIK_OPERATION void Product(int m, int n, int k, const FloatDataBlock& a, int aRowStride, int aColStride,
                             const FloatDataBlock& b, int bRowStride, int bColStride, const FloatDataBlock& c,
                             int cRowStride, int cColStride) TAVIK_END;
TAVIK_OPERATION void Product(int m, int n, int k, const DoubleComplexDataBlock& a, int aRowStride,
                             int aColStride, const DoubleComplexDataBlock& b, int bRowStride, int bColStride,
                             const DoubleComplexDataBlock& c, int cRowStride, int cColStride) TAVIK_END;
TAVIK_OPERATION void Product(int m, int n, int k, const FloatComplexDataBlock& a, int aRowStride,
                             int aColStride, const FloatComplexDataBlock& b, int bRowStride, int bColStride,
                             const FloatComplexDataBlock& c, int cRowStride, int cColStride) TAVIK_END;
TAVIK_OPERATION void Product(int m, int n, int k, const DoubleDataBlock& a, int aRowStride, int aColStride,
                             const DoubleDataBlock& b, int bRowStride, int bColStride,
                             const DoubleDataBlock& c, int cRowStride, int cColStride, bool zeroC) TAVIK_END;
TAVIK_OPERATION void Product(int m, int n, int k, const FloatDataBlock& a, int aRowStride, int aColStride,
                             const FloatDataBlock& b, int bRowStride, int bColStride, const FloatDataBlock& c,
                             int cRowStride, int cColStride, bool zeroC) TAVIK_END;
TAVIK_OPERATION void Product(int m, int n, int k, const DoubleComplexDataBlock& a, int aRowStride,
                             int aColStride, const DoubleComplexDataBlock& b, int bRowStride, int bColStride,
                             const DoubleComplexDataBlock& c, int cRowStride, int cColStride,
                             bool zeroC) TAVIK_END;
TAVIK_OPERATION void Product(int m, int n, int k, const FloatComplexDataBlock& a, int aRowStride,
                             int aColStride, const FloatComplexDataBlock& b, int bRowStride, int bColStride,
                             const FloatComplexDataBlock& c, int cRowStride, int cColStride,
                             bool zeroC) TAVIK_END;
/// C with A^T B.
TAVIK_OPERATION void TransposeProduct(int m, int n, int k, const DoubleDataBlock& a, int aRowStride,
                                      int aColStride, const DoubleDataBlock& b, int bRowStride,
                                      int bColStride, const DoubleDataBlock& c, int cRowStride,
                                      int cColStride) TAVIK_END;
TAVIK_OPERATION void TransposeProduct(int m, int n, int k, const FloatDataBlock& a, int aRowStride,
                                      int aColStride, const FloatDataBlock& b, int bRowStride, int bColStride,
                                      const FloatDataBlock& c, int cRowStride, int cColStride) TAVIK_END;
TAVIK_OPERATION void TransposeProduct(int m, int n, int k, const DoubleComplexDataBlock& a, int aRowStride,
                                      int aColStride, const DoubleComplexDataBlock& b, int bRowStride,
                                      int bColStride, const DoubleComplexDataBlock& c, int cRowStride,
                                      int cColStride) TAVIK_END;
TAVIK_OPERATION void TransposeProduct(int m, int n, int k, const FloatComplexDataBlock& a, int aRowStride,
                                      int aColStride, const FloatComplexDataBlock& b, int bRowStride,
                                      int bColStride, const FloatComplexDataBlock& c, int cRowStride,
                                      int cColStride) TAVIK_END;
TAVIK_OPERATION void TransposeProduct(int m, int n, int k, const DoubleDataBlock& a, int aRowStride,
                                      int aColStride, const DoubleDataBlock& b, int bRowStride,
                                      int bColStride, const DoubleDataBlock& c, int cRowStride,
                                      int cColStride, bool zeroC) TAVIK_END;
TAVIK_OPERATION void TransposeProduct(int m, int n, int k, const FloatDataBlock& a, int aRowStride,
                                      int aColStride, const FloatDataBlock& b, int bRowStride, int bColStride,
                                      const FloatDataBlock& c, int cRowStride, int cColStride,
                                      bool zeroC) TAVIK_END;
TAVIK_OPERATION void TransposeProduct(int m, int n, int k, const DoubleComplexDataBlock& a, int aRowStride,
                                      int aColStride, const DoubleComplexDataBlock& b, int bRowStride,
                                      int bColStride, const DoubleComplexDataBlock& c, int cRowStride,
                                      int cColStride, bool zeroC) TAVIK_END;
TAVIK_OPERATION void TransposeProduct(int m, int n, int k, const FloatComplexDataBlock& a, int aRowStride,
                                      int aColStride, const FloatComplexDataBlock& b, int bRowStride,
                                      int bColStride, const FloatComplexDataBlock& c, int cRowStride,
                                      int cColStride, bool zeroC) TAVIK_END;
/// C with A B^T.
TAVIK_OPERATION void ProductTranspose(int m, int n, int k, const DoubleDataBlock& a, int aRowStride,
                                      int aColStride, const DoubleDataBlock& b, int bRowStride,
                                      int bColStride, const DoubleDataBlock& c, int cRowStride,
                                      int cColStride) TAVIK_END;
TAVIK_OPERATION void ProductTranspose(int m, int n, int k, const DoubleDataBlock& a, int aRowStride,
                                      int aColStride, const DoubleDataBlock& b, int bRowStride,
                                      int bColStride, const DoubleDataBlock& c, int cRowStride,
                                      int cColStride, bool zeroC) TAVIK_END;
/// C with A^H B.
TAVIK_OPERATION void ConjTransposeProduct(int m, int n, int k, const DoubleComplexDataBlock& a,
                                          int aRowStride, int aColStride, const DoubleComplexDataBlock& b,
                                          int bRowStride, int bColStride, const DoubleComplexDataBlock& c,
                                          int cRowStride, int cColStride) TAVIK_END;
TAVIK_OPERATION void ConjTransposeProduct(int m, int n, int k, const FloatComplexDataBlock& a, int aRowStride,
                                          int aColStride, const FloatComplexDataBlock& b, int bRowStride,
                                          int bColStride, const FloatComplexDataBlock& c, int cRowStride,
                                          int cColStride) TAVIK_END;
TAVIK_OPERATION void ConjTransposeProduct(int m, int n, int k, const DoubleComplexDataBlock& a,
                                          int aRowStride, int aColStride, const DoubleComplexDataBlock& b,
                                          int bRowStride, int bColStride, const DoubleComplexDataBlock& c,
                                          int cRowStride, int cColStride, bool zeroC) TAVIK_END;
TAVIK_OPERATION void ConjTransposeProduct(int m, int n, int k, const FloatComplexDataBlock& a, int aRowStride,
                                          int aColStride, const FloatComplexDataBlock& b, int bRowStride,
                                          int bColStride, const FloatComplexDataBlock& c, int cRowStride,
                                          int cColStride, bool zeroC) TAVIK_END;

/// A m x n: y := y + A x if A is column-major without gaps, else y := A x. With negative strides the bases of
/// both vectors are found with n as their length.
TAVIK_OPERATION void Product(int m, int n, const DoubleDataBlock& a, int aRowStride, int aColStride,
                             const DoubleDataBlock& x, int incx, const DoubleDataBlock& y,
                             int incy) TAVIK_END;
TAVIK_OPERATION void Product(int m, int n, const FloatDataBlock& a, int aRowStride, int aColStride,
                             const FloatDataBlock& x, int incx, const FloatDataBlock& y, int incy) TAVIK_END;
TAVIK_OPERATION void Product(int m, int n, const DoubleComplexDataBlock& a, int aRowStride, int aColStride,
                             const DoubleComplexDataBlock& x, int incx, const DoubleComplexDataBlock& y,
                             int incy) TAVIK_END;
TAVIK_OPERATION void Product(int m, int n, const FloatComplexDataBlock& a, int aRowStride, int aColStride,
                             const FloatComplexDataBlock& x, int incx, const FloatComplexDataBlock& y,
                             int incy) TAVIK_END;
/// The same with A^H x, and with m as the length of both vectors.
TAVIK_OPERATION void ConjTransposeProduct(int m, int n, const DoubleComplexDataBlock& a, int aRowStride,
                                          int aColStride, const DoubleComplexDataBlock& x, int incx,
                                          const DoubleComplexDataBlock& y, int incy) TAVIK_END;
TAVIK_OPERATION void ConjTransposeProduct(int m, int n, const FloatComplexDataBlock& a, int aRowStride,
                                          int aColStride, const FloatComplexDataBlock& x, int incx,
                                          const FloatComplexDataBlock& y, int incy) TAVIK_END;

// ---- Linear systems over blocks in column-major form with a leading dimension lda. Results are the entries'
// info (qel/lapack.h); pivots are zero-based between calls ----

/// A = P L U, rows x cols, lda = rows; L and U overwrite A.
TAVIK_OPERATION int LUFactorization(int rows, int cols, const DoubleDataBlock& a,
                                    const Array<int>& ipvt) TAVIK_END;
TAVIK_OPERATION int LUFactorization(int rows, int cols, const FloatDataBlock& a,
                                    const Array<int>& ipvt) TAVIK_END;
TAVIK_OPERATION int LUFactorization(int rows, int cols, const DoubleComplexDataBlock& a,
                                    const Array<int>& ipvt) TAVIK_END;
TAVIK_OPERATION int LUFactorization(int rows, int cols, const FloatComplexDataBlock& a,
                                    const Array<int>& ipvt) TAVIK_END;
/// Solves A X = B with the factors; X overwrites B. B starts at the offset of a in b's array: both blocks
/// have the same offset.
TAVIK_OPERATION int LUSolve(int n, int nrhs, const DoubleDataBlock& a, int lda, const Array<int>& ipvt,
                            const DoubleDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int LUSolve(int n, int nrhs, const FloatDataBlock& a, int lda, const Array<int>& ipvt,
                            const FloatDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int LUSolve(int n, int nrhs, const DoubleComplexDataBlock& a, int lda, const Array<int>& ipvt,
                            const DoubleComplexDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION int LUSolve(int n, int nrhs, const FloatComplexDataBlock& a, int lda, const Array<int>& ipvt,
                            const FloatComplexDataBlock& b, int ldb) TAVIK_END;
/// The inverse, over the factors.
TAVIK_OPERATION int LUInverse(int n, const DoubleDataBlock& a, int lda, const Array<int>& ipvt) TAVIK_END;
TAVIK_OPERATION int LUInverse(int n, const FloatDataBlock& a, int lda, const Array<int>& ipvt) TAVIK_END;
TAVIK_OPERATION int LUInverse(int n, const DoubleComplexDataBlock& a, int lda,
                              const Array<int>& ipvt) TAVIK_END;
TAVIK_OPERATION int LUInverse(int n, const FloatComplexDataBlock& a, int lda,
                              const Array<int>& ipvt) TAVIK_END;
/// The reciprocal condition number from the factors; norm '1' or 'I', anorm that norm of the matrix.
TAVIK_OPERATION double LUCond(char norm, int n, double anorm, const DoubleDataBlock& a, int lda) TAVIK_END;
TAVIK_OPERATION float LUCond(char norm, int n, float anorm, const FloatDataBlock& a, int lda) TAVIK_END;
TAVIK_OPERATION double LUCond(char norm, int n, double anorm, const DoubleComplexDataBlock& a,
                              int lda) TAVIK_END;
TAVIK_OPERATION float LUCond(char norm, int n, float anorm, const FloatComplexDataBlock& a,
                             int lda) TAVIK_END;
/// Minimum-norm least squares by a complete orthogonal factorisation; X overwrites B (max(m, n) x nrhs). The
/// result is the rank, or an info that is not 0. jpvt goes in as it stands, one-based, and comes out
/// zero-based.
TAVIK_OPERATION int LeastSquareCO(int m, int n, int nrhs, const DoubleDataBlock& a, int lda,
                                  const DoubleDataBlock& b, int ldb, const Array<int>& jpvt,
                                  double rcond) TAVIK_END;
TAVIK_OPERATION int LeastSquareCO(int m, int n, int nrhs, const FloatDataBlock& a, int lda,
                                  const FloatDataBlock& b, int ldb, const Array<int>& jpvt,
                                  float rcond) TAVIK_END;
TAVIK_OPERATION int LeastSquareCO(int m, int n, int nrhs, const DoubleComplexDataBlock& a, int lda,
                                  const DoubleComplexDataBlock& b, int ldb, const Array<int>& jpvt,
                                  double rcond) TAVIK_END;
TAVIK_OPERATION int LeastSquareCO(int m, int n, int nrhs, const FloatComplexDataBlock& a, int lda,
                                  const FloatComplexDataBlock& b, int ldb, const Array<int>& jpvt,
                                  float rcond) TAVIK_END;
/// Solves op(A) X = B for a triangular A of order m (uplo 'U', 'L'; transa 'N', 'T', 'C'); X overwrites B.
TAVIK_OPERATION void SolveTriSystem(char uplo, char transa, int m, int n, const DoubleDataBlock& a, int lda,
                                    const DoubleDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION void SolveTriSystem(char uplo, char transa, int m, int n, const FloatDataBlock& a, int lda,
                                    const FloatDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION void SolveTriSystem(char uplo, char transa, int m, int n, const DoubleComplexDataBlock& a,
                                    int lda, const DoubleComplexDataBlock& b, int ldb) TAVIK_END;
TAVIK_OPERATION void SolveTriSystem(char uplo, char transa, int m, int n, const FloatComplexDataBlock& a,
                                    int lda, const FloatComplexDataBlock& b, int ldb) TAVIK_END;
/// Solves A x = b; the factors overwrite A, whose pivots stay one-based. x and b are contiguous.
TAVIK_OPERATION int Solve(int n, const DoubleDataBlock& A, const Array<int>& ipvt, const DoubleDataBlock& b,
                          const DoubleDataBlock& x) TAVIK_END;
/// Solves a tridiagonal system; dl, d, du are overwritten, X overwrites B.
TAVIK_OPERATION int SolveTriDiag(int n, int nrhs, const DoubleDataBlock& dl, const DoubleDataBlock& d,
                                 const DoubleDataBlock& du, const DoubleDataBlock& b, int ldb) TAVIK_END;
/// Solves a symmetric positive definite system by Cholesky factorisation, which overwrites A.
TAVIK_OPERATION int SolveSymPd(char uplo, int n, int nrhs, const DoubleDataBlock& a, int lda,
                               const DoubleDataBlock& b, int ldb) TAVIK_END;
/// A = Q R. QRWithPivot doesn't pivot and leaves jpvt alone: MatrixDotNetBlas::QRDecompWithPivoting does.
TAVIK_OPERATION int QRDecomp(int m, int n, const DoubleDataBlock& a, int lda,
                             const DoubleDataBlock& tau) TAVIK_END;
TAVIK_OPERATION int QRWithPivot(int m, int n, const DoubleDataBlock& a, int lda, const Array<int>& jpvt,
                                const DoubleDataBlock& tau) TAVIK_END;
/// C := Q^T C, C := Q C for the m x n matrix C and m reflections.
TAVIK_OPERATION int QTransB(int m, int n, const DoubleDataBlock& a, int lda, const DoubleDataBlock& tau,
                            const DoubleDataBlock& c, int ldc) TAVIK_END;
TAVIK_OPERATION int QB(int m, int n, const DoubleDataBlock& a, int lda, const DoubleDataBlock& tau,
                       const DoubleDataBlock& c, int ldc) TAVIK_END;
/// Least squares or minimum-norm solution for an A of full rank, which is overwritten; X overwrites B.
TAVIK_OPERATION int LeastSqQRLQCalc(int m, int n, int nrhs, const DoubleDataBlock& a, int lda,
                                    const DoubleDataBlock& b, int ldb) TAVIK_END;

/// Norm of an m x n matrix: 'M' largest |a_ij|, '1' or 'O' one norm, 'I' infinity norm, 'F' or 'E' Frobenius.
TAVIK_OPERATION double MatrixNorm(char normType, int m, int n, int lda, const DoubleDataBlock& a) TAVIK_END;
TAVIK_OPERATION float MatrixNorm(char normType, int m, int n, int lda, const FloatDataBlock& a) TAVIK_END;
TAVIK_OPERATION double MatrixNorm(char normType, int m, int n, int lda,
                                  const DoubleComplexDataBlock& a) TAVIK_END;
TAVIK_OPERATION float MatrixNorm(char normType, int m, int n, int lda,
                                 const FloatComplexDataBlock& a) TAVIK_END;
TAVIK_OPERATION double FrobNorm(int m, int n, int lda, const DoubleDataBlock& a) TAVIK_END;
TAVIK_OPERATION float FrobNorm(int m, int n, int lda, const FloatDataBlock& a) TAVIK_END;
TAVIK_OPERATION double FrobNorm(int m, int n, int lda, const DoubleComplexDataBlock& a) TAVIK_END;
TAVIK_OPERATION float FrobNorm(int m, int n, int lda, const FloatComplexDataBlock& a) TAVIK_END;
TAVIK_OPERATION double OneNorm(int m, int n, int lda, const DoubleDataBlock& a) TAVIK_END;
TAVIK_OPERATION double InfinityNorm(int m, int n, int lda, const DoubleDataBlock& a) TAVIK_END;
