// SPDX-License-Identifier: BSD-3-Clause
// The descriptor of a transform: one node per dimension in one block, linked both ways. Node 0 is the
// caller's descriptor and belongs to the last length given, the one that varies fastest. The configuration is
// read from node 0; setters write it to all nodes, so that a node alone is enough for a kernel.
#pragma once

#include <cstdint>

#include "qel/dfti.h"
#include "service/core_types.h"

namespace qel::fft {

struct dfti_node;
struct dfti_fast_plan;

using compute_routine = int(dfti_node* descriptor, void* first, void* second, void* third, void* fourth);
/// A kernel of a whole line (see fft_kernels::straight), as its caller knows its types.
using line_kernel = void();
using commit_routine_type = int(dfti_node* descriptor);
/// input and output are offset already; for split storage each is the address of a pair of pointers.
using node_kernel = int(const void* input, void* output, const dfti_node* node, void* workspace);
/// A whole transform on several threads.
using threaded_kernel = int(dfti_node* descriptor, const void* input, void* output, void* buffer);

inline constexpr uint32_t kMagic = 0x544644;  // "DFT"

enum node_flags : uint8_t {
  kUnitFlag = 1,    ///< one transform, unit strides, no threaded kernel
  kDirectFlag = 4,  ///< kUnitFlag with one user thread
};

/// The one-dimensional plans that a node may hold, each for single and double precision.
enum spec_slot : int { kOrderedSpec, kSplitSpec, kRealSpec, kScrambledSpec, kSpecSlots };

struct dfti_node {
  compute_routine* compute_forward;   ///< null unless committed
  compute_routine* compute_backward;  ///< null unless committed
  const dfti_fast_plan* fast_plan;    ///< the fast plan that holds this descriptor; null if none
  void* fast_plan_data;
  line_kernel* straight[2];  ///< of the plan that is one kernel, by direction
  int compute_pointers;      ///< data pointers of a compute call: 1, 2 or 4
  uint8_t flags;
  uint32_t magic;
  int commit_status;
  commit_routine_type* commit_routine;
  char name[10];
  int forward_domain;
  int precision;
  core_int number_of_transforms;
  int complex_storage;
  int real_storage;
  int conjugate_even_storage;
  int placement;
  int packed_format;
  core_int input_stride;   ///< in elements
  core_int output_stride;  ///< in elements
  int ordering;
  int transpose;
  core_int dimension;
  core_int node_index;
  core_int length;
  core_int packed_length;  ///< node 0: length / 2 + 1; other nodes: length
  void* work_tables[4];
  float forward_scale_f32;
  double forward_scale_f64;
  float backward_scale_f32;
  double backward_scale_f64;
  core_int log2_length;
  core_int input_offset;
  core_int output_offset;
  core_int input_distance;
  core_int output_distance;
  int not_power_of_two;           ///< after commit: the general path
  core_int element_count;         ///< lengths up to this node multiplied; node 0: all lengths
  core_int packed_element_count;  ///< the same with node 0's packed_length
  dfti_node* prev_node;
  dfti_node* next_node;
  node_kernel* node_backward;
  node_kernel* node_forward;
  threaded_kernel* threaded_backward;
  threaded_kernel* threaded_forward;
  core_int max_length;  ///< of all nodes
  void* specs[kSpecSlots][2];
  int node_workspace;
  int workspace_bytes;  ///< for each thread; node 0: the largest of all nodes and 64
  void* workspace;
  void* thread_buffer;
  int number_of_user_threads;
  int threads;  ///< that this plan may use
  int* user_thread_busy;
  void* extra_buffer;
  void (*extra_release)(dfti_node* descriptor);
};

inline bool is_descriptor(const dfti_node* node) { return node != nullptr && node->magic == kMagic; }

}  // namespace qel::fft
