// SPDX-License-Identifier: BSD-3-Clause
// The overload sets, as a table that the compiler reads: every operation with its element types and its
// result; and that there are no others where a type has none. That this file compiles is the test.
#include <gtest/gtest.h>

#include <concepts>
#include <type_traits>

#include "tavik/kernel/blas_like_functions.h"
#include "tavik/kernel/dot_net_blas.h"
#include "tavik/kernel/matrix_dot_net_blas.h"
#include "tavik/kernel/matrix_support.h"
#include "tavik/kernel/vector_math_functions.h"
#include "tests/facade/support.h"

namespace Tavik::test {
namespace {

using Kernel::DotNetBlas;
using Kernel::MatrixDotNetBlas;
using Kernel::MatrixSupport;
using D = double;
using F = float;
using Z = DoubleComplex;
using C = FloatComplex;

/// An address is there; g++ has none to compare with in constants where it checks for undefined behaviour.
template <class Address>
constexpr bool is_there(Address) {
  return true;
}
/// True if the member has exactly this type.
#define MEMBER(Class, name, Result, ...) is_there(static_cast<Result (Class::*)(__VA_ARGS__)>(&Class::name))
#define STATIC(Class, name, Result, ...) is_there(static_cast<Result (*)(__VA_ARGS__)>(&Class::name))

// What parameters repeat: a vector (block and stride), a matrix (block and two strides), arrays.
#define VEC const DataBlock<T>&, int
#define MAT const DataBlock<T>&, int, int
#define BLOCK const DataBlock<T>&
#define REALS const DataBlock<R>&
#define INTS const Array<int>&

#define DOT(name, Result, ...) MEMBER(DotNetBlas, name, Result, __VA_ARGS__)
template <class T, class R = real_of<T>>
constexpr bool kVectorsOfAll =
    DOT(copy, void, int, VEC, VEC) && DOT(copy, void, int, BLOCK, int, int, BLOCK, int, int) &&
    DOT(axpy, void, int, T, VEC, VEC) && DOT(dot, T, int, VEC, VEC) && DOT(amax, int, int, VEC) &&
    DOT(amin, int, int, VEC) && DOT(asum, R, int, VEC) && DOT(Negate, void, int, VEC) &&
    DOT(Negate, void, int, VEC, VEC) && DOT(Add, void, int, VEC, VEC) && DOT(Add, void, int, VEC, VEC, VEC) &&
    DOT(Subtract, void, int, VEC, VEC) && DOT(Subtract, void, int, VEC, VEC, VEC) &&
    DOT(Scale, void, int, int, T, MAT) && DOT(Scale, void, int, int, T, MAT, MAT) &&
    DOT(Add, void, int, int, MAT, MAT) && DOT(Add, void, int, int, MAT, MAT, MAT) &&
    DOT(Subtract, void, int, int, MAT, MAT) && DOT(Subtract, void, int, int, MAT, MAT, MAT) &&
    DOT(Copy, void, int, int, MAT, MAT) &&
    DOT(Copy, void, int, int, BLOCK, int, int, int, int, BLOCK, int, int, int, int) &&
    DOT(Multiply, void, int, VEC, VEC, VEC) && DOT(Multiply, void, int, int, MAT, MAT) &&
    DOT(Multiply, void, int, int, MAT, MAT, MAT) && DOT(Divide, void, int, VEC, VEC) &&
    DOT(Divide, void, int, VEC, VEC, VEC) && DOT(Divide, void, int, int, MAT, MAT) &&
    DOT(Divide, void, int, int, MAT, MAT, MAT) && DOT(Sum, T, int, VEC) && DOT(Product, T, int, VEC) &&
    DOT(Delta, void, int, VEC, BLOCK) && DOT(SumOfSquares, T, int, VEC) && DOT(Variance, T, int, VEC);
template <class T, class R = real_of<T>>
constexpr bool kMatricesOfAll = DOT(Product, void, int, int, int, MAT, MAT, MAT) &&
                                DOT(Product, void, int, int, int, MAT, MAT, MAT, bool) &&
                                DOT(TransposeProduct, void, int, int, int, MAT, MAT, MAT) &&
                                DOT(TransposeProduct, void, int, int, int, MAT, MAT, MAT, bool) &&
                                DOT(Product, void, int, int, MAT, VEC, VEC) &&
                                DOT(LUFactorization, int, int, int, BLOCK, INTS) &&
                                DOT(LUSolve, int, int, int, VEC, INTS, VEC) &&
                                DOT(LUInverse, int, int, VEC, INTS) && DOT(LUCond, R, char, int, R, VEC) &&
                                DOT(LeastSquareCO, int, int, int, int, VEC, VEC, INTS, R) &&
                                DOT(SolveTriSystem, void, char, char, int, int, VEC, VEC) &&
                                DOT(MatrixNorm, R, char, int, int, int, BLOCK) &&
                                DOT(FrobNorm, R, int, int, int, BLOCK);
template <class T>
constexpr bool kOfReals = DOT(Scale, void, int, T, VEC) && DOT(Multiply, void, int, T, VEC) &&
                          DOT(Multiply, void, int, T, VEC, VEC) && DOT(Increment, void, int, VEC) &&
                          DOT(Increment, void, int, int, MAT) && DOT(Decrement, void, int, VEC) &&
                          DOT(Decrement, void, int, int, MAT) && DOT(CumulativeSum, void, int, VEC, BLOCK) &&
                          DOT(MaxIndex, int, int, VEC) && DOT(MinIndex, int, int, VEC) &&
                          DOT(MaxValue, T, int, VEC) && DOT(MinValue, T, int, VEC) &&
                          DOT(NaNMaxIndex, int, int, VEC) && DOT(NaNMinIndex, int, int, VEC) &&
                          DOT(NaNMaxValue, T, int, VEC) && DOT(NaNMinValue, T, int, VEC) &&
                          DOT(NaNCount, int, int, VEC) && DOT(NaNSum, T, int, VEC) &&
                          DOT(NaNMean, T, int, VEC) && DOT(NaNSumOfSquares, T, int, VEC) &&
                          DOT(NaNVariance, T, int, VEC) &&
                          STATIC(DotNetBlas, NonCompactProduct, void, int, int, int, char, char, MAT, MAT,
                                 MAT);
template <class T, class R = real_of<T>>
constexpr bool kOfComplex = DOT(scal, void, int, R, VEC) && DOT(conjdot, T, int, VEC, VEC) &&
                            DOT(Multiply, void, int, T, VEC) && DOT(Multiply, void, int, T, VEC, VEC) &&
                            DOT(Divide, void, int, T, VEC) && DOT(Divide, void, int, R, VEC) &&
                            DOT(ConjTransposeProduct, void, int, int, int, MAT, MAT, MAT) &&
                            DOT(ConjTransposeProduct, void, int, int, int, MAT, MAT, MAT, bool) &&
                            DOT(ConjTransposeProduct, void, int, int, MAT, VEC, VEC) &&
                            STATIC(DotNetBlas, NonCompactProduct, void, int, int, int, char, char, MAT, MAT,
                                   MAT, bool);
template <class T>
constexpr bool kArraysOf = DOT(amax, int, int, const Array<T>&) && DOT(amin, int, int, const Array<T>&) &&
                           DOT(asum, D, int, const Array<T>&) && DOT(nrm2, D, int, const Array<T>&);
template <class T>
constexpr bool kMultiplyInto = DOT(Multiply, void, int, VEC, VEC);
template <class T>
constexpr bool kOfDouble =
    DOT(SumOfSquares, D, const Array<T>&) &&
    DOT(SafeDivide, void, int, const Array<T>&, const Array<T>&, const Array<T>&) &&
    DOT(SafeDivide, void, int, int, MAT, MAT) && DOT(SafeDivide, void, int, int, MAT, MAT, MAT) &&
    DOT(MakeNonNegative, void, int, int, MAT) && DOT(FastDivide, void, int, BLOCK, BLOCK, BLOCK) &&
    DOT(UniformRandomNumbers, void, unsigned, D, D, const Array<T>&) &&
    DOT(ProductTranspose, void, int, int, int, MAT, MAT, MAT) &&
    DOT(ProductTranspose, void, int, int, int, MAT, MAT, MAT, bool) &&
    DOT(Solve, int, int, BLOCK, INTS, BLOCK, BLOCK) &&
    DOT(SolveTriDiag, int, int, int, BLOCK, BLOCK, BLOCK, VEC) &&
    DOT(SolveSymPd, int, char, int, int, VEC, VEC) && DOT(QRDecomp, int, int, int, VEC, BLOCK) &&
    DOT(QRWithPivot, int, int, int, VEC, INTS, BLOCK) && DOT(QTransB, int, int, int, VEC, BLOCK, VEC) &&
    DOT(QB, int, int, int, VEC, BLOCK, VEC) && DOT(LeastSqQRLQCalc, int, int, int, int, VEC, VEC) &&
    DOT(OneNorm, D, int, int, int, BLOCK) && DOT(InfinityNorm, D, int, int, int, BLOCK);

static_assert(kVectorsOfAll<D> && kVectorsOfAll<F> && kVectorsOfAll<Z> && kVectorsOfAll<C>);
static_assert(kMatricesOfAll<D> && kMatricesOfAll<F> && kMatricesOfAll<Z> && kMatricesOfAll<C>);
static_assert(kOfReals<D> && kOfReals<F> && kOfComplex<Z> && kOfComplex<C>);
static_assert(kArraysOf<D> && kArraysOf<Z> && kMultiplyInto<D> && kMultiplyInto<Z> && kMultiplyInto<C> &&
              kOfDouble<D>);
static_assert(MEMBER(DotNetBlas, QelFreeBuffers, void));
static_assert(std::derived_from<DotNetBlas, ITavikKernel> &&
              std::derived_from<MatrixDotNetBlas, Matrix::IMatrixKernel>);
static_assert(std::derived_from<Kernel::VectorMathFunctions, IVectorMathKernel> &&
              std::derived_from<Kernel::BlasLikeFunctions, IBlasLikeKernel>);
static_assert(DotNetBlas::epsilon == 1e-9 && MatrixDotNetBlas::epsilon == 1e-9 &&
              MatrixSupport::epsilon == 1e-9 && MatrixDotNetBlas::BLOCKSIZE == 64 &&
              MatrixSupport::BLOCKSIZE == 64);

#define MATRIX(name, Result, ...) MEMBER(MatrixDotNetBlas, name, Result, __VA_ARGS__)
template <class T, class R = real_of<T>>
constexpr bool kMatrixOfAll =
    MATRIX(QRDecomp, int, int, int, VEC, BLOCK) &&
    MATRIX(QRDecompWithPivoting, int, int, int, VEC, INTS, BLOCK) &&
    MATRIX(GetQFromQR, int, int, int, int, VEC, BLOCK) &&
    MATRIX(MultiplyByQFromQR, int, char, char, int, int, int, VEC, BLOCK, VEC) &&
    MATRIX(SVDFromGeneral, int, char, char, int, int, VEC, REALS, VEC, VEC) &&
    MATRIX(SVDFromGeneralDC, int, char, int, int, VEC, REALS, VEC, VEC) &&
    MATRIX(TriangularProduct, void, char, char, int, VEC, VEC) &&
    MATRIX(BandedFact, int, int, int, int, int, VEC, INTS) &&
    MATRIX(SolveFromBandFact, int, char, int, int, int, int, VEC, INTS, VEC) &&
    MATRIX(CondNumberFromBandFact, R, char, int, int, int, VEC, INTS, R) &&
    MATRIX(SymPDBandFact, int, int, int, VEC) &&
    MATRIX(SolveFromSymPDBandFact, int, int, int, int, VEC, VEC) &&
    MATRIX(CondNumberFromSymPDBandFact, R, int, int, VEC, R) &&
    MATRIX(BandedProduct, void, char, int, int, int, int, BLOCK, VEC, VEC) &&
    MATRIX(TriDiagLUFact, int, int, BLOCK, BLOCK, BLOCK, BLOCK, INTS) &&
    MATRIX(SolveTriDiagFromLUFact, int, int, int, BLOCK, BLOCK, BLOCK, BLOCK, INTS, VEC) &&
    MATRIX(CondNumberFromTriDiagLU, R, char, int, BLOCK, BLOCK, BLOCK, BLOCK, INTS, R) &&
    MATRIX(SymPDTriDiagFact, int, int, REALS, BLOCK) &&
    MATRIX(SolveSymPDTriDiagFromFact, int, int, int, REALS, BLOCK, VEC) &&
    MATRIX(CondNumberFromSymPDTriDiagFact, R, int, REALS, BLOCK, R) &&
    MATRIX(SymFact, int, int, BLOCK, INTS) && MATRIX(SolveSymFromFact, int, int, int, BLOCK, INTS, VEC) &&
    MATRIX(CondNumberFromSymFact, R, int, BLOCK, INTS, R) &&
    MATRIX(InverseFromSymFact, int, int, BLOCK, INTS) && MATRIX(SymPDFact, int, int, BLOCK) &&
    MATRIX(SolveSymPDFromFact, int, int, int, BLOCK, VEC) &&
    MATRIX(CondNumberFromSymPDFact, R, int, BLOCK, R) && MATRIX(InverseFromSymPDFact, int, int, BLOCK) &&
    MATRIX(SolvePackedUpperTriSystem, int, int, int, BLOCK, VEC) &&
    MATRIX(SolvePackedLowerTriSystem, int, int, int, BLOCK, VEC) &&
    MATRIX(InverseOfPackedUpperTriSystem, int, int, BLOCK) &&
    MATRIX(InverseOfPackedLowerTriSystem, int, int, BLOCK) &&
    MATRIX(ConditionNumOfPackedUpperTriMat, R, char, int, BLOCK) &&
    MATRIX(ConditionNumOfPackedLowerTriMat, R, char, int, BLOCK) &&
    MATRIX(UpperTriangularProduct, void, int, BLOCK, VEC) &&
    MATRIX(LowerTriangularProduct, void, int, BLOCK, VEC) &&
    MATRIX(UpperTriangularProduct, void, int, VEC, VEC, BLOCK) &&
    MATRIX(LowerTriangularProduct, void, int, VEC, VEC, BLOCK) &&
    MATRIX(SymmetricPackedEigDecomp, int, char, char, int, BLOCK, R, R, int, int, R, REALS, VEC, INTS);
template <class T>
constexpr bool kMatrixOfReals = MATRIX(GeneralEigDecomp, int, char, char, char, char, int, VEC, BLOCK, BLOCK,
                                       VEC, VEC, BLOCK, BLOCK) &&
                                MATRIX(SymBandedProduct, void, int, int, BLOCK, VEC, VEC) &&
                                MATRIX(SymmetricProduct, void, int, BLOCK, VEC, BLOCK) &&
                                MATRIX(SymmetricProduct, void, int, VEC, VEC, BLOCK);
template <class T, class R = real_of<T>>
constexpr bool kMatrixOfComplex =
    MATRIX(GeneralEigDecomp, int, char, char, char, char, int, VEC, BLOCK, VEC, VEC, REALS, REALS) &&
    MATRIX(HermitianBandedProduct, void, int, int, BLOCK, VEC, VEC) &&
    MATRIX(HermitianProduct, void, int, BLOCK, VEC, BLOCK) &&
    MATRIX(HermitianProduct, void, int, VEC, VEC, BLOCK, bool) && MATRIX(Transpose, void, int, VEC, BLOCK) &&
    MATRIX(Transpose, void, int, VEC, int, BLOCK) && MATRIX(PackedIsDiagonalReal, bool, int, VEC) &&
    MATRIX(PackedMakeDiagonalReal, void, int, VEC) && MATRIX(BandedIsDiagonalReal, bool, int, VEC, int) &&
    MATRIX(BandedMakeDiagonalReal, void, int, VEC, int);
template <class T>
constexpr bool kMatrixOfDouble = MATRIX(GeneralLinearLeastSq, int, char, int, int, int, const Array<T>&, int,
                                        const Array<T>&, int);
static_assert(kMatrixOfAll<D> && kMatrixOfAll<F> && kMatrixOfAll<Z> && kMatrixOfAll<C>);
static_assert(kMatrixOfReals<D> && kMatrixOfReals<F> && kMatrixOfComplex<Z> && kMatrixOfComplex<C> &&
              kMatrixOfDouble<D>);

// Operations of both classes that have no object state.
#define SHARED(How, Class)                                                                    \
  How(Class, SolveSymPd, int, char, int, int, VEC, VEC) &&                                    \
      How(Class, FastDivide, void, int, BLOCK, BLOCK, BLOCK) &&                               \
      How(Class, SafeDivide, void, int, const Array<T>&, const Array<T>&, const Array<T>&) && \
      How(Class, SafeDivide, void, int, int, MAT, MAT) &&                                     \
      How(Class, SafeDivide, void, int, int, MAT, MAT, MAT) &&                                \
      How(Class, MakeNonNegative, void, int, int, MAT)
template <class T>
constexpr bool kShared = SHARED(MEMBER, MatrixDotNetBlas) && SHARED(STATIC, MatrixSupport);
static_assert(kShared<D>);

/// A forwarder of these stems for elements of T takes the entry's arguments; L letters, I integers, scalars
/// and elements by address. Both classes are asked.
#define FORWARDER(stem, Result, ...)                          \
  STATIC(MatrixSupport, tavik_##stem, Result, __VA_ARGS__) && \
      STATIC(MatrixDotNetBlas, tavik_##stem, Result, __VA_ARGS__)
#define L const char*
#define I const int*
#define IN const T*
#define OUT T*
#define RIN const R*
#define ROUT R*
#define IOUT int*
template <class T, class R = real_of<T>>
constexpr bool kForwardersOfAll =
    FORWARDER(axpy, void, I, IN, IN, I, OUT, I) &&
    FORWARDER(gbmv, void, L, I, I, I, I, IN, IN, I, IN, I, IN, OUT, I) &&
    FORWARDER(spmv, void, L, I, IN, IN, IN, I, IN, OUT, I) && FORWARDER(tpmv, void, L, L, L, I, IN, OUT, I) &&
    FORWARDER(trmv, void, L, L, L, I, IN, I, OUT, I) &&
    FORWARDER(gttrf, int, I, OUT, OUT, OUT, OUT, IOUT, IOUT) &&
    FORWARDER(gttrs, int, L, I, I, IN, IN, IN, IN, I, OUT, I, IOUT) &&
    FORWARDER(pttrf, int, I, ROUT, OUT, IOUT) && FORWARDER(pptrf, int, L, I, OUT, IOUT) &&
    FORWARDER(pptrs, int, L, I, I, IN, OUT, I, IOUT) && FORWARDER(pptri, int, L, I, OUT, IOUT) &&
    FORWARDER(sptrf, int, L, I, OUT, IOUT, IOUT) && FORWARDER(sptrs, int, L, I, I, IN, I, OUT, I, IOUT) &&
    FORWARDER(sptri, int, L, I, OUT, I, OUT, IOUT) && FORWARDER(gbtrf, int, I, I, I, I, OUT, I, IOUT, IOUT) &&
    FORWARDER(gbtrs, int, L, I, I, I, I, IN, I, I, OUT, I, IOUT) &&
    FORWARDER(pbtrf, int, L, I, I, OUT, I, IOUT) && FORWARDER(pbtrs, int, L, I, I, I, IN, I, OUT, I, IOUT) &&
    FORWARDER(tptrs, int, L, L, L, I, I, IN, OUT, I, IOUT) && FORWARDER(tptri, int, L, L, I, OUT, IOUT) &&
    FORWARDER(gebak, int, L, L, I, I, I, RIN, I, OUT, I, IOUT);
template <class T>
constexpr bool kForwardersOfReals =
    FORWARDER(dot, T, I, IN, I, IN, I) && FORWARDER(sbmv, void, L, I, I, IN, IN, I, IN, I, IN, OUT, I) &&
    FORWARDER(gtcon, int, L, I, IN, IN, IN, IN, I, IN, OUT, OUT, IOUT, IOUT) &&
    FORWARDER(pttrs, int, I, I, IN, IN, OUT, I, IOUT) &&
    FORWARDER(ptcon, int, I, IN, IN, IN, OUT, OUT, IOUT) &&
    FORWARDER(ppcon, int, L, I, IN, IN, OUT, OUT, IOUT, IOUT) &&
    FORWARDER(spcon, int, L, I, IN, I, IN, OUT, OUT, IOUT, IOUT) &&
    FORWARDER(gbcon, int, L, I, I, I, IN, I, I, IN, OUT, OUT, IOUT, IOUT) &&
    FORWARDER(pbcon, int, L, I, I, IN, I, IN, OUT, OUT, IOUT, IOUT) &&
    FORWARDER(pocon, int, L, I, IN, I, IN, OUT, OUT, IOUT, IOUT) &&
    FORWARDER(geqrf, int, I, I, OUT, I, OUT, OUT, I, IOUT) &&
    FORWARDER(geqp3, int, I, I, OUT, I, IOUT, OUT, OUT, I, IOUT) &&
    FORWARDER(ormqr, int, L, L, I, I, I, OUT, I, IN, OUT, I, OUT, I, IOUT) &&
    FORWARDER(orgqr, int, I, I, I, OUT, I, IN, OUT, I, IOUT) &&
    FORWARDER(gesdd, int, L, I, I, OUT, I, OUT, OUT, I, OUT, I, OUT, I, IOUT, IOUT) &&
    FORWARDER(gesvd, int, L, L, I, I, OUT, I, OUT, OUT, I, OUT, I, OUT, I, IOUT) &&
    FORWARDER(tpcon, int, L, L, L, I, IN, OUT, OUT, IOUT, IOUT) &&
    FORWARDER(trcon, int, L, L, L, I, IN, I, OUT, OUT, IOUT, IOUT) &&
    FORWARDER(geevx, int, L, L, L, L, I, OUT, I, OUT, OUT, OUT, I, OUT, I, IOUT, IOUT, OUT, OUT, OUT, OUT,
              OUT, I, IOUT, IOUT) &&
    FORWARDER(spevx, int, L, L, L, I, OUT, IN, IN, I, I, IN, IOUT, OUT, OUT, I, OUT, IOUT, IOUT, IOUT);
template <class T, class R = real_of<T>>
constexpr bool kForwardersOfComplex =
    FORWARDER(dotu, void, OUT, I, IN, I, IN, I) &&
    FORWARDER(hbmv, void, L, I, I, IN, IN, I, IN, I, IN, OUT, I) &&
    FORWARDER(hpmv, void, L, I, IN, IN, IN, I, IN, OUT, I) &&
    FORWARDER(gtcon, int, L, I, IN, IN, IN, IN, I, RIN, ROUT, OUT, IOUT) &&
    FORWARDER(pttrs, int, L, I, I, RIN, IN, OUT, I, IOUT) &&
    FORWARDER(ptcon, int, I, RIN, IN, RIN, ROUT, ROUT, IOUT) &&
    FORWARDER(ppcon, int, L, I, IN, RIN, ROUT, OUT, ROUT, IOUT) &&
    FORWARDER(spcon, int, L, I, IN, I, RIN, ROUT, OUT, IOUT) &&
    FORWARDER(hptrf, int, L, I, OUT, IOUT, IOUT) && FORWARDER(hptrs, int, L, I, I, IN, I, OUT, I, IOUT) &&
    FORWARDER(hptri, int, L, I, OUT, I, OUT, IOUT) &&
    FORWARDER(hpcon, int, L, I, IN, I, RIN, ROUT, OUT, IOUT) &&
    FORWARDER(gbcon, int, L, I, I, I, IN, I, I, RIN, ROUT, OUT, ROUT, IOUT) &&
    FORWARDER(pbcon, int, L, I, I, IN, I, RIN, ROUT, OUT, ROUT, IOUT) &&
    FORWARDER(geqrf, int, I, I, OUT, I, OUT, IOUT) &&
    FORWARDER(geqp3, int, I, I, OUT, I, IOUT, OUT, ROUT, IOUT) &&
    FORWARDER(unmqr, int, L, L, I, I, I, OUT, I, IN, OUT, I, IOUT) &&
    FORWARDER(ungqr, int, I, I, I, OUT, I, IN, IOUT) &&
    FORWARDER(gesdd, int, L, I, I, OUT, I, ROUT, OUT, I, OUT, I, ROUT, IOUT, IOUT) &&
    FORWARDER(gesvd, int, L, L, I, I, OUT, I, ROUT, OUT, I, OUT, I, ROUT, IOUT) &&
    FORWARDER(tpcon, int, L, L, L, I, IN, ROUT, OUT, ROUT, IOUT) &&
    FORWARDER(geevx, int, L, L, L, L, I, OUT, I, OUT, OUT, I, OUT, I, IOUT, IOUT, ROUT, ROUT, ROUT, ROUT,
              ROUT, IOUT) &&
    FORWARDER(hpevx, int, L, L, L, I, OUT, RIN, RIN, I, I, RIN, IOUT, ROUT, OUT, I, OUT, ROUT, IOUT, IOUT,
              IOUT);
template <class T>
constexpr bool kForwardersOfDouble = FORWARDER(gels, int, L, I, I, I, OUT, I, OUT, I, OUT, I, IOUT);
template <class T, class R = real_of<T>>
constexpr bool kForwardersOfDoubleComplex = FORWARDER(gebal, int, L, I, OUT, I, IOUT, IOUT, ROUT, IOUT) &&
                                            FORWARDER(gehrd, int, I, I, I, OUT, I, OUT, IOUT) &&
                                            FORWARDER(unghr, int, I, I, I, OUT, I, IN, IOUT) &&
                                            FORWARDER(hseqr, int, L, L, I, I, I, OUT, I, OUT, OUT, I, IOUT) &&
                                            FORWARDER(trevc, int, L, L, I, I, OUT, I, OUT, I, OUT, I, I, IOUT,
                                                      OUT, ROUT, IOUT);
static_assert(kForwardersOfAll<D> && kForwardersOfAll<F> && kForwardersOfAll<Z> && kForwardersOfAll<C>);
static_assert(kForwardersOfReals<D> && kForwardersOfReals<F> && kForwardersOfComplex<Z> &&
              kForwardersOfComplex<C>);
static_assert(kForwardersOfDouble<D> && kForwardersOfDoubleComplex<Z>);

// What a type doesn't have.
template <class T>
concept MultipliesInto = requires(DotNetBlas b, DataBlock<T> x) {
  b.Multiply(1, x, 1, x, 1);
};
template <class T>
concept Increments = requires(DotNetBlas b, DataBlock<T> x) {
  b.Increment(1, x, 1);
};
template <class T>
concept TransposesSecond = requires(DotNetBlas b, DataBlock<T> x) {
  b.ProductTranspose(1, 1, 1, x, 1, 1, x, 1, 1, x, 1, 1);
};
template <class T>
concept HasNorm = requires(DotNetBlas b, Array<T> x) {
  b.nrm2(1, x);
};
static_assert(!MultipliesInto<F> && !Increments<Z> && !Increments<C> && !TransposesSecond<F> &&
              !TransposesSecond<Z> && !TransposesSecond<C> && !HasNorm<F> && !HasNorm<C>);

TEST(Lists, AreServedThroughTheInterfaces) {
  DotNetBlas blas;
  MatrixDotNetBlas matrices;
  ITavikKernel& vectors = blas;
  Matrix::IMatrixKernel& kernel = matrices;
  const FloatDataBlock x{{3, 1, 2}, 0};
  EXPECT_EQ(vectors.MaxIndex(3, x, 1), 0);
  const DoubleDataBlock one{{4}, 0};
  EXPECT_EQ(kernel.SymPDFact(1, one), 0);
  EXPECT_EQ(one.Data[0], 2);
}

TEST(VectorMathFunctions, DivideMultiplyAndSubtract) {
  Kernel::VectorMathFunctions functions;
  IVectorMathKernel& kernel = functions;
  const Array<double> a = random_numbers<double>(33, 1), b = random_numbers<double>(33, 2), y(33);
  kernel.div(33, a, b, y);
  for (int i = 0; i < 33; ++i) EXPECT_EQ(y[i], a[i] / b[i]);
  kernel.mul(33, a, b, y);
  for (int i = 0; i < 33; ++i) EXPECT_EQ(y[i], a[i] * b[i]);
  kernel.sub(32, a, b, y);
  for (int i = 0; i < 32; ++i) EXPECT_EQ(y[i], a[i] - b[i]);
  EXPECT_EQ(y[32], a[32] * b[32]);
  EXPECT_THROW(kernel.div(0, Array<double>(), b, y), std::out_of_range);
}

}  // namespace
}  // namespace Tavik::test
