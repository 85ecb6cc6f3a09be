% SPDX-License-Identifier: BSD-3-Clause
% Runs Octave's own tests of the functions that stand on BLAS and LAPACK. A line for each: name, failed, passed;
% Octave's known bugs count as neither.
compiled = {'chol', 'det', 'dot', 'eig', 'givens', 'gsvd', 'hess', 'inv', 'kron', 'lu', 'matrix_type', 'mgorth', ...
            'ordqz', 'ordschur', 'pinv', 'qr', 'qz', 'rcond', 'schur', 'sqrtm', 'svd', 'sylvester', '__eigs__', 'data'};
other = {'diag-perm', 'leftdiv', 'sparse'};
scripts = {'expm', 'logm', 'null', 'orth', 'rank', 'cond', 'linsolve', 'lscov', 'normest', 'housh', 'gls', 'ols', ...
           'condest', 'normest1', 'subspace', 'qzhess', 'condeig', 'planerot', 'ordeig', 'isdefinite'};
folder = fullfile(OCTAVE_HOME(), 'share', 'octave', version(), 'etc', 'tests');
names = [strcat(fullfile(folder, 'libinterp', 'corefcn'), filesep, compiled, '.cc-tst'), ...
         strcat(fullfile(folder, 'fixed'), filesep, other, '.tst'), scripts];
for i = 1:numel(names)
  [passed, all, expected, known] = test(names{i}, 'quiet');
  [~, name] = fileparts(names{i});
  printf('RESULT %s %d %d\n', name, all - passed - expected - known, passed);
end
