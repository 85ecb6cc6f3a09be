// SPDX-License-Identifier: BSD-3-Clause
// A managed program on libqel.so by P/Invoke: a dot product, a matrix product, a transform, a sparse solve, and an
// argument error that comes back as a record.
using System;
using System.Runtime.InteropServices;

static class Client {
  const string Library = "libqel.so.1";

  [DllImport(Library)] static extern double ddot(ref int n, double[] x, ref int incx, double[] y, ref int incy);
  [DllImport(Library)] static extern void dgemm(
      string transa, string transb, ref int m, ref int n, ref int k, ref double alpha, double[] a, ref int lda,
      double[] b, ref int ldb, ref double beta, [In, Out] double[] c, ref int ldc);
  [DllImport(Library)] static extern int DftiCreateDescriptor_d_1d(out IntPtr handle, int domain, int length);
  [DllImport(Library)] static extern int DftiCommitDescriptor(IntPtr handle);
  [DllImport(Library)] static extern int DftiComputeForward(IntPtr handle, [In, Out] double[] data);
  [DllImport(Library)] static extern int DftiComputeBackward(IntPtr handle, [In, Out] double[] data);
  [DllImport(Library)] static extern int DftiFreeDescriptor(ref IntPtr handle);
  [DllImport(Library)] static extern int pardisoinit([In, Out] IntPtr[] pt, ref int mtype, [In, Out] int[] iparm);
  [DllImport(Library)] static extern void pardiso(
      [In, Out] IntPtr[] pt, ref int maxfct, ref int mnum, ref int mtype, ref int phase, ref int n, double[] a,
      int[] ia, int[] ja, [In, Out] int[] perm, ref int nrhs, [In, Out] int[] iparm, ref int msglvl,
      [In, Out] double[] b, [In, Out] double[] x, ref int error);

  static int faults = 0;
  static int one = 1;

  static void Check(bool right, string what) {
    if (right) return;
    Console.WriteLine("wrong: " + what);
    ++faults;
  }

  static void Dot() {
    int n = 1000;
    var x = new double[n];
    var y = new double[n];
    for (int i = 0; i < n; ++i) { x[i] = i; y[i] = i % 2 == 0 ? 1 : -1; }
    Check(ddot(ref n, x, ref one, y, ref one) == -500, "dot");
    int half = 500, two = 2;
    Check(ddot(ref half, x, ref two, y, ref two) == 249500, "dot with strides");
  }

  static void Product() {
    int m = 37, n = 29, k = 53;
    double alpha = 2, beta = -1;
    var random = new Random(3);
    var a = new double[m * k];
    var b = new double[n * k];
    var c = new double[m * n];
    for (int i = 0; i < a.Length; ++i) a[i] = random.Next(-9, 9);
    for (int i = 0; i < b.Length; ++i) b[i] = random.Next(-9, 9);
    for (int i = 0; i < c.Length; ++i) c[i] = random.Next(-9, 9);
    var want = new double[m * n];
    for (int j = 0; j < n; ++j)
      for (int i = 0; i < m; ++i) {
        double sum = 0;  // whole numbers: exact in any order
        for (int l = 0; l < k; ++l) sum += a[i + l * m] * b[j + l * n];
        want[i + j * m] = alpha * sum + beta * c[i + j * m];
      }
    dgemm("N", "T", ref m, ref n, ref k, ref alpha, a, ref m, b, ref n, ref beta, c, ref m);
    for (int i = 0; i < c.Length; ++i)
      if (c[i] != want[i]) { Check(false, "gemm at " + i); return; }
  }

  static void Transform() {
    const int complex = 32, n = 1024, wave = 5;
    IntPtr handle;
    int status = DftiCreateDescriptor_d_1d(out handle, complex, n);
    status |= DftiCommitDescriptor(handle);
    var data = new double[2 * n];
    for (int i = 0; i < n; ++i) data[2 * i] = Math.Cos(2 * Math.PI * wave * i / n);
    var start = (double[])data.Clone();
    status |= DftiComputeForward(handle, data);
    double error = 0;
    for (int i = 0; i < n; ++i) {
      double want = i == wave || i == n - wave ? n / 2 : 0;
      error = Math.Max(error, Math.Abs(data[2 * i] - want) + Math.Abs(data[2 * i + 1]));
    }
    Check(error < 1e-10, "spectrum: " + error);
    status |= DftiComputeBackward(handle, data);
    error = 0;
    for (int i = 0; i < 2 * n; ++i) error = Math.Max(error, Math.Abs(data[i] / n - start[i]));
    Check(error < 1e-14, "there and back: " + error);
    status |= DftiFreeDescriptor(ref handle);
    Check(status == 0 && handle == IntPtr.Zero, "status of the transform: " + status);
    Check(DftiComputeForward(IntPtr.Zero, data) == 5, "status without a descriptor");
  }

  // The upper triangle, by rows, of the five-point operator on a square grid.
  static void Solve() {
    const int side = 20;
    int n = side * side;
    var a = new System.Collections.Generic.List<double>();
    var ja = new System.Collections.Generic.List<int>();
    var ia = new int[n + 1];
    var b = new double[n];
    for (int i = 0; i < n; ++i) {
      ia[i] = a.Count + 1;
      a.Add(4); ja.Add(i + 1);
      b[i] += 4;
      foreach (int step in new[] {1, side}) {
        if (i + step >= n || (step == 1 && (i + 1) % side == 0)) continue;
        a.Add(-1); ja.Add(i + step + 1);
        b[i] -= 1;
        b[i + step] -= 1;
      }
    }
    ia[n] = a.Count + 1;
    var pt = new IntPtr[64];
    var iparm = new int[64];
    var perm = new int[n];
    var x = new double[n];
    int type = 2, phase = 13, error = 0, quiet = 0, end = -1;
    pardisoinit(pt, ref type, iparm);
    pardiso(pt, ref one, ref one, ref type, ref phase, ref n, a.ToArray(), ia, ja.ToArray(), perm, ref one, iparm,
            ref quiet, b, x, ref error);
    Check(error == 0, "error of the solver: " + error);
    double worst = 0;  // b was made for a solution of ones
    foreach (double value in x) worst = Math.Max(worst, Math.Abs(value - 1));
    Check(worst < 1e-12, "solution: " + worst);
    pardiso(pt, ref one, ref one, ref type, ref end, ref n, null, null, null, null, ref one, iparm, ref quiet, null,
            null, ref error);
    Check(error == 0, "error of the release: " + error);
  }

  static int Main() {
    Dot();
    Product();
    Transform();
    Solve();
    if (faults == 0) Console.WriteLine("right");
    return faults;
  }
}
