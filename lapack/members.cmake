# Members of the reference archives that the library has of its own, in libqel and in liblapack.so.3 alike.
set(qel_lapack_left_out xerbla.o xerbla_array.o second_INT_ETIME.o dsecnd_INT_ETIME.o)
# Kept under another name: the library's own routines go on to them, for each slice or where there is no memory.
set(qel_lapack_kept)
foreach(type s d c z)
  foreach(routine getrf getrf2 getri getrs lauum potrf potrf2 potrs trtri)
    list(APPEND qel_lapack_left_out ${type}${routine}.o)
  endforeach()
  foreach(routine gbtrf gebal geqrf gttrs hseqr lasr pttrs pptrs sptrf sptrs gbtrs pbtrs stein tptrs)
    list(APPEND qel_lapack_kept ${type}${routine})
  endforeach()
endforeach()
list(APPEND qel_lapack_kept chptrf zhptrf chptrs zhptrs sormqr dormqr cunmqr zunmqr
     sopmtr dopmtr cupmtr zupmtr)
