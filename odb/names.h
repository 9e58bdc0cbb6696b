// Every group, dataset and attribute name of the database file layout, in one place.
// docs/format.md describes what each holds; the store and load functions use these names
// and no string literals of their own.
#pragma once

namespace odb::name {

// Root attributes.
inline constexpr char kFormat[] = "format";
inline constexpr char kFormatVersion[] = "format_version";
inline constexpr char kName[] = "name";
inline constexpr char kTitle[] = "title";
inline constexpr char kDescription[] = "description";
inline constexpr char kAnalysisCode[] = "analysis_code";

// Lists of numbered groups: the entry names, in the order of the groups 0, 1, ...
inline constexpr char kNames[] = "names";

// Root groups.
inline constexpr char kAnnotations[] = "annotations";
inline constexpr char kAnnotationKeys[] = "keys";
inline constexpr char kAnnotationTexts[] = "texts";
inline constexpr char kSectionCategories[] = "section_categories";
inline constexpr char kSections[] = "sections";
inline constexpr char kMaterials[] = "materials";
inline constexpr char kAssembly[] = "assembly";
inline constexpr char kSteps[] = "steps";

// Section categories (and their section point lists, prefix kPoint).
inline constexpr char kDescriptions[] = "descriptions";
inline constexpr char kPoint[] = "point";

// Ragged section point lists: <prefix>_counts, <prefix>_numbers, <prefix>_descriptions.
inline constexpr char kCountsSuffix[] = "_counts";
inline constexpr char kNumbersSuffix[] = "_numbers";
inline constexpr char kDescriptionsSuffix[] = "_descriptions";

// Sections.
inline constexpr char kKinds[] = "kinds";
inline constexpr char kSectionMaterials[] = "materials";
inline constexpr char kThickness[] = "thickness";
inline constexpr char kMass[] = "mass";
inline constexpr char kLayerCounts[] = "layer_counts";
inline constexpr char kLayerMaterials[] = "layer_materials";
inline constexpr char kLayerThickness[] = "layer_thickness";
inline constexpr char kLayerAngleTypes[] = "layer_angle_types";
inline constexpr char kLayerAngleValues[] = "layer_angle_values";
inline constexpr char kLayerAngleTexts[] = "layer_angle_texts";

// Materials: tables <behaviour>_values and <behaviour>_row_lengths.
inline constexpr char kValuesSuffix[] = "_values";
inline constexpr char kRowLengthsSuffix[] = "_row_lengths";
inline constexpr char kDensity[] = "density";
inline constexpr char kElastic[] = "elastic";
inline constexpr char kElasticType[] = "elastic_type";
inline constexpr char kFailStrain[] = "fail_strain";
inline constexpr char kFailStress[] = "fail_stress";
inline constexpr char kAcousticMedium[] = "acoustic_medium";

// Entity groups.
inline constexpr char kInstances[] = "instances";
inline constexpr char kNodes[] = "nodes";
inline constexpr char kLabels[] = "labels";
inline constexpr char kCoordinates[] = "coordinates";
inline constexpr char kElements[] = "elements";
inline constexpr char kTypeNames[] = "type_names";
inline constexpr char kTypeIndex[] = "type_index";
inline constexpr char kOffsets[] = "offsets";
inline constexpr char kConnectivity[] = "connectivity";
inline constexpr char kSectionCategory[] = "section_category";
inline constexpr char kNodeSets[] = "node_sets";
inline constexpr char kElementSets[] = "element_sets";
inline constexpr char kSurfaces[] = "surfaces";
inline constexpr char kSectionAssignments[] = "section_assignments";
inline constexpr char kSectionNames[] = "section_names";
inline constexpr char kPlacementFlags[] = "placement_flags";
inline constexpr char kThicknesses[] = "thicknesses";
inline constexpr char kConnectorOrientations[] = "connector_orientations";
inline constexpr char kRegionPairs[] = "region_pairs";
inline constexpr char kFirstRegions[] = "first";
inline constexpr char kSecondRegions[] = "second";
inline constexpr char kCount[] = "count";
inline constexpr char kHasCsys1[] = "has_csys1";
inline constexpr char kCsys1[] = "csys1";
inline constexpr char kHasCsys2[] = "has_csys2";
inline constexpr char kCsys2[] = "csys2";
inline constexpr char kRegion[] = "region";

// Set groups.
inline constexpr char kType[] = "type";
inline constexpr char kInstanceNames[] = "instance_names";
inline constexpr char kCounts[] = "counts";
inline constexpr char kFaces[] = "faces";

// Set lists (format version 3): every set of one list, members contiguous.
inline constexpr char kSetTypes[] = "types";
inline constexpr char kGroupOffsets[] = "group_offsets";
inline constexpr char kGroupInstances[] = "group_instances";
inline constexpr char kMemberStarts[] = "member_starts";
inline constexpr char kMemberCounts[] = "member_counts";

// Step groups.
inline constexpr char kProcedure[] = "procedure";
inline constexpr char kDomain[] = "domain";
inline constexpr char kTotalTime[] = "total_time";
inline constexpr char kFrameIndex[] = "frame_index";
inline constexpr char kFrameDomain[] = "frame_domain";
inline constexpr char kFrameMode[] = "frame_mode";
inline constexpr char kFrameValue[] = "frame_value";
inline constexpr char kFrameFrequency[] = "frame_frequency";
inline constexpr char kFrameDescription[] = "frame_description";
inline constexpr char kFrames[] = "frames";
inline constexpr char kHistory[] = "history";

// Frame and field output groups.
inline constexpr char kFieldNames[] = "field_names";
inline constexpr char kComplex[] = "complex";
inline constexpr char kMatrixOrder[] = "matrix_order";
inline constexpr char kComponentLabels[] = "component_labels";
inline constexpr char kLocationPositions[] = "location_positions";
inline constexpr char kLocationPoint[] = "location_point";
inline constexpr char kBlockPositions[] = "block_positions";
inline constexpr char kBlockTypes[] = "block_types";
inline constexpr char kBlockWidths[] = "block_widths";
inline constexpr char kBlockRows[] = "block_rows";
inline constexpr char kBlockPrecision[] = "block_precision";
inline constexpr char kBlockSectionPoints[] = "block_section_points";
inline constexpr char kBlockSectionPointDescriptions[] = "block_section_point_descriptions";
inline constexpr char kBlockElementTypes[] = "block_element_types";
inline constexpr char kBlockInstances[] = "block_instances";
inline constexpr char kBlockElementCounts[] = "block_element_counts";
inline constexpr char kBlockCsysWidths[] = "block_csys_widths";
inline constexpr char kBlockArrays[] = "block_arrays";
inline constexpr char kBlocks[] = "blocks";

// Block groups.
inline constexpr char kData[] = "data";
inline constexpr char kConjugateData[] = "conjugate_data";
inline constexpr char kElementLabels[] = "element_labels";
inline constexpr char kNodeLabels[] = "node_labels";  // also of history points
inline constexpr char kIntegrationPoints[] = "integration_points";
inline constexpr char kLocalCsys[] = "local_csys";

// History of a step (format version 3): a region catalogue, outputs stored column-wise.
inline constexpr char kDescriptionsList[] = "descriptions";
inline constexpr char kPositions[] = "positions";
inline constexpr char kElementTypes[] = "element_types";
inline constexpr char kPointSectionPoints[] = "section_points";
inline constexpr char kPointSectionPointDescriptions[] = "section_point_descriptions";
inline constexpr char kPointInstances[] = "instances";
inline constexpr char kRegionSets[] = "region_sets";
inline constexpr char kSets[] = "sets";
inline constexpr char kOutputOffsets[] = "output_offsets";
inline constexpr char kOutputColumns[] = "output_columns";
inline constexpr char kOutputSamples[] = "output_samples";
inline constexpr char kOutputFirst[] = "output_first";
inline constexpr char kOutputTimes[] = "output_times";
inline constexpr char kColumnNames[] = "column_names";
inline constexpr char kColumnDescriptions[] = "column_descriptions";
inline constexpr char kColumnTypes[] = "column_types";
inline constexpr char kColumnWidths[] = "column_widths";
inline constexpr char kColumnComplex[] = "column_complex";
inline constexpr char kColumns[] = "columns";
inline constexpr char kValues[] = "values";
inline constexpr char kConjugates[] = "conjugates";
inline constexpr char kTimes[] = "times";

// History region groups (format version 2 and older).
inline constexpr char kPosition[] = "position";
inline constexpr char kNodeLabel[] = "node_label";
inline constexpr char kElementLabel[] = "element_label";
inline constexpr char kElementType[] = "element_type";
inline constexpr char kIntegrationPoint[] = "integration_point";
inline constexpr char kSectionPoint[] = "section_point";
inline constexpr char kSectionPointDescription[] = "section_point_description";
inline constexpr char kInstance[] = "instance";
inline constexpr char kOutputNames[] = "output_names";
inline constexpr char kOutputs[] = "outputs";

}  // namespace odb::name
